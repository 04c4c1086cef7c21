#pragma once

#include "emulator/store/document.h"
#include "emulator/store/exchange.h"
#include "emulator/store/refusals.h"
#include "emulator/store/register.h"
#include "emulator/store/sqlite.h"
#include "emulator/store/statefile.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

struct Token
{
    std::string login{};
    TimePoint expiresAt{};
};

/// How many register calls with this external id arrived, whatever became of them.
struct WireCount
{
    std::string groupCode{};
    std::string externalId{};
    std::int64_t requests = 0;
};

/// Documents, tokens, registers and recorded exchanges in SQLite. Of a token, only its digest is stored.
/// Every call that fails throws sqlite::Error.
class Store
{
public:
    /// `file` is created if missing; `:memory:` lasts as long as the store. Only the newest `keep` documents,
    /// four times as many exchanges and 100,000 tokens are kept. Throws std::runtime_error if the file cannot
    /// be used.
    explicit Store(const std::string& file, std::int64_t keep = 10'000);

    /// For one request: its changes are made as a whole or not at all.
    [[nodiscard]] sqlite::Transaction transaction() { return sqlite::Transaction(database); }
    [[nodiscard]] sqlite::Savepoint savepoint() { return sqlite::Savepoint(database); }

    void addToken(const std::string& token, const Token& about);
    [[nodiscard]] std::optional<Token> findToken(const std::string& token);

    /// Creates those of the registers 1 to `count` of the group that do not exist yet.
    void prepareRegisters(const std::string& groupCode, int count);
    /// Of the registers 1 to `count` of the group, the one that will finish its queue first.
    [[nodiscard]] Register freestRegister(const std::string& groupCode, int count);
    void saveRegister(const Register& where);

    /// Sets the document's sequence.
    void addDocument(Document& document);
    [[nodiscard]] std::optional<Document> findDocument(const std::string& uuid);
    [[nodiscard]] std::optional<std::string> findUuid(
        const std::string& groupCode, const std::string& externalId);
    void setWaitsLeft(std::int64_t sequence, int waits);
    /// Newest first.
    [[nodiscard]] std::vector<Document> documents(const DocumentFilter& filter);
    /// How many there are by status, whatever the filter's status, limit and sequence.
    [[nodiscard]] std::map<std::string, std::int64_t> documentCounts(const DocumentFilter& filter);

    /// Counts a register call with that id.
    void countRequest(
        const std::string& groupCode, const std::string& externalId, const std::string& operation);
    [[nodiscard]] std::int64_t requests(const std::string& groupCode, const std::string& externalId);
    /// For the ids that match the pattern; an empty group or operation matches all.
    [[nodiscard]] std::vector<WireCount> wireCounts(
        const std::string& group, const std::string& idPattern, const std::string& operation);

    /// Sets the exchange's sequence.
    void addExchange(Exchange& exchange);
    /// Oldest first: register calls with that id and status calls for its document, in any group if none is
    /// given.
    [[nodiscard]] std::vector<Exchange> exchanges(
        const std::string& groupCode, const std::string& externalId, const ExchangeRange& range);
    /// Newest first, of every endpoint; of one group if it is given.
    [[nodiscard]] std::vector<Exchange> newestExchanges(const std::string& groupCode, int limit);
    /// The oldest of a range instead of its newest, of every endpoint; of one group and the token calls if a
    /// group is given.
    [[nodiscard]] std::vector<Exchange> oldestExchanges(
        const std::string& groupCode, const ExchangeRange& range);
    /// Of the newest exchange; 0 if there are none.
    [[nodiscard]] std::int64_t newestSequence();

    [[nodiscard]] Refusals& refusals() { return refusalTable; }

    /// Deletes documents, exchanges, refusals and wire counts. Tokens, registers and their counters stay.
    void clear();

private:
    StateFile stateFile;
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
    sqlite::Statement countDocuments;
    sqlite::Statement selectUuid;
    sqlite::Statement updateWaits;
    sqlite::Statement upsertWire;
    sqlite::Statement selectWire;
    sqlite::Statement selectWires;
    sqlite::Statement insertExchange;
    sqlite::Statement pruneExchanges;
    sqlite::Statement selectExchanges;
    sqlite::Statement selectNewest;
    sqlite::Statement selectOldest;
    sqlite::Statement selectLast;
    sqlite::Statement pruneWire;
    Refusals refusalTable;
};

} // namespace emulator
