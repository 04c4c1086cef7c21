#pragma once

#include "emulator/store/document.h"
#include "emulator/store/exchange.h"
#include "emulator/store/sqlite.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

/// A register call whose id has no document: the service refused it, or a fault hit it before it took effect.
struct Refusal
{
    /// Its sequence identifies the refusal.
    Exchange exchange{};
    std::string operation{};
    /// Nothing if the call has no valid total.
    std::optional<std::int64_t> totalKopecks{};
    /// Objects with `field` and `rule`; empty unless fields of the body are what is wrong.
    Json fields = Json::array();
};

/// The newest refused call of every id, and all those without an id. The database is borrowed.
class Refusals
{
public:
    /// Refusals are kept as long as their exchanges, of which `keptExchanges` are kept.
    Refusals(const sqlite::Database& database, std::int64_t keptExchanges);

    /// The exchange must have been stored.
    void add(const Refusal& refusal);
    /// For an id that now has a document.
    void forget(const std::string& groupCode, const std::string& externalId);
    [[nodiscard]] std::optional<Refusal> find(std::int64_t sequence);
    /// Newest first. The status does not matter.
    [[nodiscard]] std::vector<Refusal> matching(const DocumentFilter& filter);
    [[nodiscard]] std::int64_t count(const DocumentFilter& filter);

private:
    std::int64_t kept;
    sqlite::Statement insert;
    sqlite::Statement prune;
    sqlite::Statement deleteId;
    sqlite::Statement selectOne;
    sqlite::Statement select;
    sqlite::Statement selectCount;
};

} // namespace emulator
