#include "emulator/effects.h"

#include "emulator/replies.h"

#include <algorithm>

namespace emulator {

namespace {

ServiceError errorRow(const int code)
{
    const auto known = serviceErrors();
    const auto found = std::ranges::find(known, code, &ServiceError::code);
    return found == known.end() ? ServiceError{code, 400, "unknown", "Ошибка по заказу"} : *found;
}

Reply withError(const Fault& fault, const Reply& honest, const TimePoint now)
{
    Reply reply = errorReply(fault.endpoint, errorRow(fault.code), now);
    if (fault.code != 33 && fault.code != 34)
        return reply;
    const Json before = Json::parse(honest.body);
    Json body = Json::parse(reply.body);
    if (before.contains("uuid"))
        body["uuid"] = before["uuid"];
    body["status"] = "wait";
    return jsonReply(reply.status, body);
}

Reply withoutKey(const Reply& honest, std::string_view key)
{
    Json body = Json::parse(honest.body);
    Json* where = &body;
    for (std::size_t dot = key.find('.'); dot != std::string_view::npos; dot = key.find('.')) {
        const std::string part(key.substr(0, dot));
        key.remove_prefix(dot + 1);
        if (!where->is_object() || !where->contains(part))
            return honest;
        where = &(*where)[part];
    }
    if (where->is_object())
        where->erase(std::string(key));
    return jsonReply(honest.status, body);
}

Reply ofAnotherDocument(const Reply& honest)
{
    Json body = Json::parse(honest.body);
    body["uuid"] = "ffffffff-ffff-4fff-8fff-ffffffffffff";
    if (body.contains("external_id"))
        body["external_id"] = "another-document";
    if (body.contains("payload") && body["payload"].is_object()) {
        Json& payload = body["payload"];
        payload["total"] = payload["total"].get<double>() + 1;
        for (const char* number : {"fiscal_document_number", "fiscal_receipt_number"})
            payload[number] = payload[number].get<std::int64_t>() + 1;
    }
    return jsonReply(honest.status, body);
}

Reply withStatus(const Reply& honest, const char* word, const Json& error)
{
    Json body = Json::parse(honest.body);
    body["status"] = word;
    body["error"] = error;
    body["payload"] = nullptr;
    return jsonReply(200, body);
}

Reply htmlPage(const int status)
{
    const std::string title = std::to_string(status) + " fremulator";
    return {.status = status,
        .contentType = "text/html; charset=utf-8",
        .body = "<html>\r\n<head><title>" + title + "</title></head>\r\n<body><h1>" + title +
                "</h1></body>\r\n</html>\r\n"};
}

/// The part of misbehaviour that is a matter of what the answer says.
Reply changed(const Fault& fault, const Reply& honest, const TimePoint now)
{
    const bool report = fault.endpoint == Endpoint::Report;
    switch (fault.effect) {
    case Effect::Error:
        return withError(fault, honest, now);
    case Effect::Html:
        return htmlPage(fault.status);
    case Effect::Empty:
        return {.status = fault.status};
    case Effect::NotJson:
        return {.status = honest.status, .body = "this is not JSON"};
    case Effect::OtherDocument:
        return ofAnotherDocument(honest);
    case Effect::WithoutKey:
        return withoutKey(honest, fault.key);
    case Effect::Fail:
        return report ? withStatus(honest, "fail", failure(fault)) : honest;
    case Effect::Never:
        return report ? withStatus(honest, "wait", errorObject(serviceError(34))) : honest;
    default:
        return honest;
    }
}

/// The part that is a matter of the connection.
Wire wireOf(const Fault& fault)
{
    using Send = Wire::Send;
    using End = Wire::End;
    switch (fault.effect) {
    case Effect::Truncated:
        return {.send = Send::HeadAndHalfTheBody, .end = End::Close};
    case Effect::WrongLength:
        return {.end = fault.bytes > 0 ? End::Hold : End::Close, .lengthError = fault.bytes};
    case Effect::Drip:
        return {.piece = 1, .pause = fault.time};
    case Effect::Delay:
        return {.delay = fault.time};
    case Effect::Silent:
        return {.send = Send::Nothing, .end = End::Hold};
    case Effect::Close:
        return {.send = Send::Nothing, .end = End::Close};
    case Effect::ResetBefore:
        return {.send = Send::Nothing, .end = End::Reset};
    case Effect::ResetDuring:
        return {.send = Send::HeadAndHalfTheBody, .end = End::Reset};
    case Effect::ResetAfter:
        return {.end = End::Reset};
    default:
        return {};
    }
}

} // namespace

Json failure(const Fault& fault)
{
    const FailType& type = *std::ranges::find(failTypes(), fault.type, &FailType::name);
    return errorObject({fault.code, 200, type.name, type.text});
}

Answer misbehave(const Fault& fault, const Reply& honest, const TimePoint now)
{
    return {.reply = changed(fault, honest, now), .wire = wireOf(fault)};
}

} // namespace emulator
