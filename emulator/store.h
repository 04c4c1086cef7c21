#pragma once

#include "emulator/json.h"
#include "emulator/moscowtime.h"
#include "emulator/register.h"
#include "emulator/sqlite.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

/// What becomes of a document once its time has come.
enum class Outcome
{
    Done = 0,
    Fail = 1,
    Never = 2
};

/// A document that the service took.
struct Document
{
    std::int64_t sequence = 0;
    std::string uuid{};
    std::string groupCode{};
    std::string externalId{};
    std::string operation{};
    std::string login{};
    TimePoint receivedAt{};
    /// The body of the call, byte for byte.
    std::string body{};
    std::int64_t totalKopecks = 0;
    std::string callbackUrl{};
    std::string deviceCode{};
    /// Until then a status answer says "not processed yet".
    TimePoint readyAt{};
    /// As long as it is above zero, so does this many more status answers.
    int waitsLeft = 0;
    Outcome outcome = Outcome::Done;
    /// Payload of the status answer of a document that is done, else null.
    Json payload{};
    /// Error object of one that failed, else null.
    Json error{};
};

struct Token
{
    std::string login{};
    TimePoint expiresAt{};
};

/// Documents, tokens and registers in SQLite. Every call that fails throws sqlite::Error.
class Store
{
public:
    /// `file` is created when missing; `:memory:` lives as long as the store.
    explicit Store(const std::string& file);

    void addToken(const std::string& token, const Token& about);
    [[nodiscard]] std::optional<Token> findToken(const std::string& token);

    /// Makes sure that the group has registers 1 to `count`; those that are there stay as they are.
    void prepareRegisters(const std::string& groupCode, int count);
    /// The register of the group that has worked off its queue first.
    [[nodiscard]] Register freestRegister(const std::string& groupCode, int count);

    /// Keeps a new document and what its register has become, both or neither.
    void addDocument(const Document& document, const Register& where);
    [[nodiscard]] std::optional<Document> findDocument(const std::string& uuid);
    [[nodiscard]] std::optional<std::string> findUuid(
        const std::string& groupCode, const std::string& externalId);
    void setWaitsLeft(std::int64_t sequence, int waits);

private:
    sqlite::Database database_;
    sqlite::Statement insertToken_;
    sqlite::Statement selectToken_;
    sqlite::Statement insertRegister_;
    sqlite::Statement countRegisters_;
    sqlite::Statement selectRegister_;
    sqlite::Statement updateRegister_;
    sqlite::Statement insertDocument_;
    sqlite::Statement selectDocument_;
    sqlite::Statement selectUuid_;
    sqlite::Statement updateWaits_;
};

} // namespace emulator
