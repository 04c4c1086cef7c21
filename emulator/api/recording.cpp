#include "emulator/api/recording.h"

#include "emulator/api/query.h"

#include <array>

namespace emulator {

Json toJson(const Exchange& exchange)
{
    Json json{{"sequence", exchange.sequence}, {"at", isoTime(exchange.at)},
        {"endpoint", nameOf(exchange.endpoint)}, {"group", exchange.groupCode},
        {"external_id", exchange.externalId}, {"uuid", exchange.uuid}, {"login", exchange.login},
        {"status", exchange.status}, {"fault", exchange.fault}, {"request", exchange.request},
        {"answer", exchange.answer}};
    if (exchange.code)
        json["code"] = *exchange.code;
    return json;
}

Answer recordingOf(const Request& request, Store& store)
{
    // Tens of thousands of calls of 64 KiB each would not fit into memory.
    constexpr int atOnce = 20;
    constexpr std::array known{"group"};
    rejectUnknownParameters(request, known);
    const ExchangeRange whole{.before = store.newestSequence() + 1, .limit = atOnce};
    auto next = [&store, group = request.parameter("group"), range = whole]() mutable {
        std::string lines;
        for (const Exchange& exchange : store.oldestExchanges(group, range)) {
            lines += toLine(toJson(exchange)) + "\n";
            range.after = exchange.sequence;
        }
        return lines;
    };
    return {.reply = {.contentType = "application/x-ndjson"}, .next = std::move(next)};
}

} // namespace emulator
