#include "emulator/api/api.h"

#include "emulator/api/expect.h"
#include "emulator/api/qr.h"
#include "emulator/api/query.h"
#include "emulator/api/receipts.h"
#include "emulator/api/recording.h"
#include "emulator/api/rules.h"
#include "emulator/http/jsonreply.h"
#include "emulator/values/jsonreader.h"
#include "emulator/values/plaintext.h"

#include <optional>

namespace emulator {

namespace {

Reply errorReply(int status, const std::string& text)
{
    return jsonReply(status, {{"error", text}});
}

ExchangeRange rangeIn(const Request& request)
{
    return {.after = positiveParameter(request, "after", 0),
        .before = positiveParameter(request, "before", 0),
        .limit = limitIn(request)};
}

int settlementOf(const std::string& operation)
{
    const bool purchase = operation.starts_with("buy");
    const bool refund = operation.ends_with("_refund");
    return (purchase ? 3 : 1) + (refund ? 1 : 0);
}

std::string qrOf(const Document& document)
{
    return document.payload.is_object()
               ? qrText(document.payload, document.readyAt, settlementOf(document.operation))
               : std::string();
}

Json toJson(const std::vector<Exchange>& exchanges)
{
    Json all = Json::array();
    for (const Exchange& exchange : exchanges)
        all.push_back(toJson(exchange));
    return {{"exchanges", all}};
}

Json toJson(const EffectInfo& info)
{
    Json endpoints = Json::array();
    for (const Endpoint endpoint : knownEndpoints) {
        if (info.endpoints.contains(endpoint))
            endpoints.push_back(nameOf(endpoint));
    }
    Json json{{"effect", info.name}, {"phase", nameOf(info.phase)}, {"endpoints", endpoints},
        {"parameter", nameOf(info.parameter)}, {"meaning", info.meaning}};
    if (info.parameter == Parameter::Type) {
        for (const FailureInfo& failure : failures())
            json["types"].push_back({{"type", failure.name}, {"code", toNumber(failure.code)}});
    } else if (info.parameter != Parameter::None && info.parameter != Parameter::Key) {
        json["default"] = info.defaultValue;
    }
    return json;
}

void rejectBadQuery(const Request& request)
{
    for (const auto& [name, value] : request.query) {
        if (!isPlainText(name))
            throw JsonError("the name of a parameter must be text in UTF-8 without control characters");
        if (!isPlainText(value))
            throw JsonError(name + " must be text in UTF-8 without control characters");
    }
}

Reply effectsReply()
{
    Json all = Json::array();
    for (const EffectInfo& info : effects())
        all.push_back(toJson(info));
    return jsonReply(200, {{"effects", all}});
}

} // namespace

Answer Api::answer(const Request& request)
{
    if (request.path == "/_emulator/events" && request.method == "GET")
        return {.follow = true};
    try {
        rejectBadQuery(request);
        if (request.path == "/_emulator/recording" && request.method == "GET")
            return recordingOf(request, store);
        return {.reply = route(request)};
    } catch (const JsonError& error) {
        return {.reply = errorReply(400, error.what())};
    }
}

Reply Api::route(const Request& request)
{
    const std::string path = request.path.substr(apiPath.size());
    const std::string first = path.substr(0, path.find('/'));
    const std::string rest = path.size() > first.size() ? path.substr(first.size() + 1) : std::string();
    const std::string& method = request.method;
    if (path == "documents" && method == "GET")
        return documents(request);
    if (path == "documents" && method == "DELETE")
        return clearDocuments();
    if (first == "documents" && method == "GET" && rest.find('/') == std::string::npos)
        return document(rest);
    if (first == "documents" && method == "GET")
        return documentPart(request, rest.substr(0, rest.find('/')), rest.substr(rest.find('/') + 1));
    if (path == "receipts" && method == "GET")
        return jsonReply(200, receipts(request, store, service));
    if (first == "refusals" && method == "GET")
        return refusal(rest);
    if (path == "service" && method == "GET")
        return jsonReply(200, accounts(service.settings(), replaying));
    if (path == "rules" && method == "GET")
        return jsonReply(200, rulesOf(service));
    if (path == "exchanges" && method == "GET")
        return exchanges(request);
    if (path == "effects" && method == "GET")
        return effectsReply();
    if (path == "faults" && method == "GET")
        return faults();
    if (path == "faults" && method == "POST")
        return addFaults(request.body);
    if (path == "faults" && method == "DELETE")
        return clearFaults();
    if (first == "faults" && method == "DELETE")
        return removeFault(rest);
    if (path == "expect" && method == "GET") {
        const Verdict verdict = replaying ? Verdict{false, "answers from a recording register no receipts"}
                                          : expect(request, store, service);
        return jsonReply(verdict.pass ? 200 : 417, {{"pass", verdict.pass}, {"reason", verdict.reason}});
    }
    return errorReply(404, method + " " + request.path + " is not part of the emulator's API");
}

Json Api::summary(const Document& document) const
{
    return summaryOf(document, store, service);
}

Reply Api::refusal(const std::string& id) const
{
    const auto number = numberOf(id);
    const auto found = number ? store.refusals().find(*number) : std::nullopt;
    return found ? jsonReply(200, detailsOf(*found, store)) : errorReply(404, "refusal not found: " + id);
}

Reply Api::documents(const Request& request) const
{
    const int limit = limitIn(request);
    const int before = positiveParameter(request, "before", 0);
    Json all = Json::array();
    for (const Document& document : store.documents({.group = request.parameter("group"),
                                    .externalId = request.parameter("external_id"),
                                    .operation = request.parameter("operation"),
                                    .text = request.parameter("text"),
                                    .before = before,
                                    .limit = limit}))
        all.push_back(summary(document));
    return jsonReply(200, {{"documents", all}});
}

Reply Api::document(const std::string& uuid) const
{
    const auto document = store.findDocument(uuid);
    if (!document)
        return errorReply(404, "document not found: " + uuid);
    Json json = detailsOf(*document, store, service);
    json["qr"] = qrOf(*document);
    return jsonReply(200, json);
}

Reply Api::documentPart(const Request& request, const std::string& uuid, const std::string& part) const
{
    const auto document = store.findDocument(uuid);
    if (!document)
        return errorReply(404, "document not found: " + uuid);
    if (part == "exchange")
        return jsonReply(
            200, toJson(store.exchanges(document->groupCode, document->externalId, rangeIn(request))));
    const std::string qr = qrOf(*document);
    if (part == "qr.svg" && !qr.empty())
        return {.contentType = "image/svg+xml", .body = qrImage(qr)};
    return errorReply(404, "document " + uuid + " has no " + part);
}

Reply Api::clearDocuments()
{
    store.clear();
    notify("cleared");
    return jsonReply(200, {{"cleared", true}});
}

Reply Api::exchanges(const Request& request) const
{
    const std::string externalId = request.parameter("external_id");
    const std::string group = request.parameter("group");
    return jsonReply(200, toJson(externalId.empty() ? store.newestExchanges(group, limitIn(request))
                                                    : store.exchanges(group, externalId, rangeIn(request))));
}

Reply Api::faults() const
{
    Json all = Json::array();
    for (const Fault& fault : faultBox.all())
        all.push_back(emulator::toJson(fault));
    return jsonReply(200, {{"faults", all}});
}

Reply Api::addFaults(const std::string& body)
{
    if (replaying)
        throw JsonError("faults do not apply to answers from a recording");
    const Json json = parseShallow(body);
    if (json.is_discarded())
        throw JsonError("the body must be a fault or an array of faults in JSON");
    std::vector<Fault> wanted;
    for (const Json& one : json.is_array() ? json : Json::array({json}))
        wanted.push_back(readFault(one));
    Json added = Json::array();
    for (const Fault& fault : faultBox.add(wanted))
        added.push_back(emulator::toJson(fault));
    notify("faults");
    return jsonReply(200, {{"faults", added}});
}

Reply Api::clearFaults()
{
    faultBox.clear();
    notify("faults");
    return faults();
}

Reply Api::removeFault(const std::string& id)
{
    const auto number = numberOf(id);
    if (!number || !faultBox.remove(*number))
        return errorReply(404, "fault not found: " + id);
    notify("faults");
    return faults();
}

void Api::notify(const char* kind) const
{
    if (listener)
        listener({{"kind", kind}});
}

} // namespace emulator
