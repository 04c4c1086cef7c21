#pragma once

#include "emulator/store/document.h"
#include "emulator/store/exchange.h"
#include "emulator/store/register.h"
#include "emulator/store/sqlite.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

struct Token
{
    std::string login{};
    TimePoint expiresAt{};
};

/// How often register calls of this external id came over the wire, whatever became of them.
struct WireCount
{
    std::string groupCode{};
    std::string externalId{};
    std::int64_t requests = 0;
};

/// Documents, tokens, registers and recorded exchanges in SQLite. Every call that fails throws sqlite::Error.
class Store
{
public:
    /// `file` is created when missing; `:memory:` lives as long as the store. The newest `keep` documents
    /// stay, and four times as many exchanges; older ones are forgotten. So are tokens beyond the newest
    /// 100,000.
    explicit Store(const std::string& file, std::int64_t keep = 10'000);

    /// One per request: what the request changes happens as a whole.
    [[nodiscard]] sqlite::Transaction transaction() { return sqlite::Transaction(database); }
    [[nodiscard]] sqlite::Savepoint savepoint() { return sqlite::Savepoint(database); }

    void addToken(const std::string& token, const Token& about);
    [[nodiscard]] std::optional<Token> findToken(const std::string& token);

    /// Makes sure that the group has registers 1 to `count`; those that are there stay as they are.
    void prepareRegisters(const std::string& groupCode, int count);
    /// The register of the group that has worked off its queue first.
    [[nodiscard]] Register freestRegister(const std::string& groupCode, int count);
    void saveRegister(const Register& where);

    /// Gives the document its sequence.
    void addDocument(Document& document);
    [[nodiscard]] std::optional<Document> findDocument(const std::string& uuid);
    [[nodiscard]] std::optional<std::string> findUuid(
        const std::string& groupCode, const std::string& externalId);
    void setWaitsLeft(std::int64_t sequence, int waits);
    /// Newest first.
    [[nodiscard]] std::vector<Document> documents(const DocumentFilter& filter);

    /// Counts one more register call of that id.
    void countRequest(
        const std::string& groupCode, const std::string& externalId, const std::string& operation);
    [[nodiscard]] std::int64_t requests(const std::string& groupCode, const std::string& externalId);
    /// Of the ids that fit the pattern; an empty group or operation stands for all.
    [[nodiscard]] std::vector<WireCount> wireCounts(
        const std::string& group, const std::string& idPattern, const std::string& operation);

    /// Gives the exchange its sequence.
    void addExchange(Exchange& exchange);
    /// Oldest first: register calls of that id and status calls of its document, in any group when none is
    /// named.
    [[nodiscard]] std::vector<Exchange> exchanges(
        const std::string& groupCode, const std::string& externalId, const ExchangeRange& range);
    /// Newest first, of every endpoint; of one group when it is named.
    [[nodiscard]] std::vector<Exchange> newestExchanges(const std::string& groupCode, int limit);

    /// Forgets documents, exchanges and wire counts. Tokens, registers and their counters stay.
    void clear();

private:
    sqlite::Database database;
    std::int64_t documentsKept;
    sqlite::Statement insertToken;
    sqlite::Statement pruneTokens;
    sqlite::Statement selectToken;
    sqlite::Statement insertRegister;
    sqlite::Statement countRegisters;
    sqlite::Statement selectRegister;
    sqlite::Statement updateRegister;
    sqlite::Statement insertDocument;
    sqlite::Statement pruneDocuments;
    sqlite::Statement selectDocument;
    sqlite::Statement selectDocuments;
    sqlite::Statement selectUuid;
    sqlite::Statement updateWaits;
    sqlite::Statement upsertWire;
    sqlite::Statement selectWire;
    sqlite::Statement selectWires;
    sqlite::Statement insertExchange;
    sqlite::Statement pruneExchanges;
    sqlite::Statement selectExchanges;
    sqlite::Statement selectNewest;
    sqlite::Statement pruneWire;
};

} // namespace emulator
