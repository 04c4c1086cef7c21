#include "emulator/api/receipts.h"

#include "emulator/api/query.h"
#include "emulator/values/jsonreader.h"
#include "emulator/values/money.h"

#include <algorithm>
#include <array>
#include <functional>

namespace emulator {

namespace {

constexpr auto refused = "refused";

constexpr std::array statuses{"done", "wait", "fail", refused};

void rejectBadParameters(const Request& request, const std::string& status)
{
    constexpr std::array known{"status", "group", "external_id", "operation", "text", "limit"};
    rejectUnknownParameters(request, known);
    if (!status.empty() && std::ranges::find(statuses, status) == statuses.end())
        throw JsonError("status must be one of " + joined(statuses));
}

Json orNull(const std::optional<int>& number)
{
    return number ? Json(*number) : Json();
}

// Registers print the whole sum where no VAT is in it, or none that is known.
std::int64_t printedVat(const std::string& type, std::int64_t kopecks)
{
    const std::int64_t tax = vatIn(type, kopecks).value_or(0);
    return tax == 0 ? kopecks : tax;
}

Json vatsOf(const Json& object)
{
    const Json& given = valueOf(object, "vats");
    if (!given.empty())
        return given;
    std::vector<std::pair<std::string, std::int64_t>> sums;
    for (const Json& item : valueOf(object, "items")) {
        const std::string type = textOf(objectOf(item, "vat"), "type");
        const auto sum = wholePartsOf(valueOf(item, "sum"), 100);
        if (type.empty() || !sum)
            continue;
        const auto found = std::ranges::find(sums, type, &std::pair<std::string, std::int64_t>::first);
        if (found == sums.end())
            sums.emplace_back(type, *sum);
        else
            found->second += *sum;
    }
    Json all = Json::array();
    for (const auto& [type, sum] : sums)
        all.push_back({{"type", type}, {"sum", roubles(printedVat(type, sum))}});
    return all;
}

Json fieldsOf(const Document& document, const Service& service)
{
    return service.statusWord(document) == "fail" ? service.fieldsToBlame(document) : Json::array();
}

Json summaryOf(const Refusal& refusal, Store& store)
{
    const Exchange& exchange = refusal.exchange;
    const Json firstField = refusal.fields.empty() ? Json() : refusal.fields[0];
    const auto& total = refusal.totalKopecks;
    return {{"refusal", exchange.sequence}, {"group", exchange.groupCode},
        {"external_id", exchange.externalId}, {"operation", refusal.operation}, {"login", exchange.login},
        {"received_at", isoTime(exchange.at)}, {"status", refused},
        {"total", total ? Json(roubles(*total)) : Json()}, {"code", orNull(exchange.code)},
        {"http_status", exchange.status}, {"fault", exchange.fault}, {"first_field", firstField},
        {"wire_requests",
            exchange.externalId.empty() ? 1 : store.requests(exchange.groupCode, exchange.externalId)}};
}

} // namespace

Json summaryOf(const Document& document, Store& store, const Service& service)
{
    Json json{{"sequence", document.sequence}, {"uuid", document.uuid}, {"group", document.groupCode},
        {"external_id", document.externalId}, {"operation", document.operation}, {"login", document.login},
        {"received_at", isoTime(document.receivedAt)}, {"status", service.statusWord(document)},
        {"total", roubles(document.totalKopecks)},
        {"wire_requests", store.requests(document.groupCode, document.externalId)}};
    if (const Json fields = fieldsOf(document, service); !fields.empty())
        json["first_field"] = fields[0];
    return json;
}

Json detailsOf(const Document& document, Store& store, const Service& service)
{
    const Json request = Json::parse(document.body);
    Json json = summaryOf(document, store, service);
    json["device_code"] = document.deviceCode;
    json["ready_at"] = isoTime(document.readyAt);
    json["request"] = request;
    json["report"] = Json::parse(service.statusOf(document).body);
    json["vats"] = vatsOf(valueOf(request, request.contains("correction") ? "correction" : "receipt"));
    json["fields"] = fieldsOf(document, service);
    return json;
}

Json detailsOf(const Refusal& refusal, Store& store)
{
    Json json = summaryOf(refusal, store);
    json["fields"] = refusal.fields;
    json["request"] = refusal.exchange.request;
    json["answer"] = refusal.exchange.answer;
    return json;
}

Json receipts(const Request& request, Store& store, const Service& service)
{
    rejectBadParameters(request, request.parameter("status"));
    const int limit = limitIn(request);
    const DocumentFilter filter{.group = request.parameter("group"),
        .externalId = request.parameter("external_id"),
        .operation = request.parameter("operation"),
        .text = request.parameter("text"),
        .status = request.parameter("status"),
        .now = service.now(),
        .limit = limit};
    std::vector<Json> all;
    if (filter.status != refused) {
        for (const Document& document : store.documents(filter))
            all.push_back(summaryOf(document, store, service));
    }
    if (filter.status.empty() || filter.status == refused) {
        for (const Refusal& refusal : store.refusals().matching(filter))
            all.push_back(summaryOf(refusal, store));
    }
    const auto time = [](const Json& one) { return one["received_at"].get<std::string>(); };
    std::ranges::stable_sort(all, std::greater(), time);
    all.resize(std::min(all.size(), static_cast<std::size_t>(limit)));

    auto counts = store.documentCounts(filter);
    counts[refused] = store.refusals().count(filter);
    Json counted;
    for (const char* status : statuses)
        counted[status] = counts[status];
    return {{"receipts", all}, {"counts", counted}};
}

Json accounts(const ServiceOptions& options, bool replaying)
{
    Json users = Json::array();
    for (const User& user : options.users)
        users.push_back({{"login", user.login}, {"groups", user.groups}});
    Json groups = Json::array();
    for (const Group& group : options.groups)
        groups.push_back({{"code", group.code}, {"inn", group.inn}});
    return {{"users", users}, {"groups", groups}, {"operations", options.lists.operations},
        {"replay", replaying}};
}

} // namespace emulator
