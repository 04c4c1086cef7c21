#include "emulator/faults/misbehaviour.h"

#include "emulator/http/jsonreply.h"
#include "emulator/protocol/replies.h"

#include <algorithm>

namespace emulator {

namespace {

ServiceError errorRow(ErrorCode code)
{
    const auto known = serviceErrors();
    const auto found = std::ranges::find(known, code, &ServiceError::code);
    return found == known.end() ? ServiceError{code, 400, "unknown", "Ошибка, заданная в эмуляторе"} : *found;
}

Reply withError(const Fault& fault, const Call& call, const Reply& honest, TimePoint now)
{
    const ServiceError error = errorRow(fault.code);
    if (error.keys != Keys::Waiting)
        return errorReply(fault.endpoint, error, now);
    const bool undone =
        fault.phase == Phase::Before && fault.endpoint == Endpoint::Sell && honest.status == 200;
    const Json before = Json::parse(honest.body);
    const bool known = before.contains("uuid") && !undone;
    const bool duplicate = error.code == ErrorCode::DuplicateId;
    return waitingReply(known ? before["uuid"].get<std::string>() : std::string(), error, now,
        duplicate ? duplicateText(call.externalId, call.group) : std::string());
}

std::optional<Reply> withoutKey(const Reply& honest, std::string_view key)
{
    Json body = Json::parse(honest.body);
    Json* where = &body;
    for (std::size_t dot = key.find('.'); dot != std::string_view::npos; dot = key.find('.')) {
        const std::string part(key.substr(0, dot));
        key.remove_prefix(dot + 1);
        if (!where->is_object() || !where->contains(part))
            return std::nullopt;
        where = &(*where)[part];
    }
    if (!where->is_object() || where->erase(std::string(key)) == 0)
        return std::nullopt;
    return jsonReply(honest.status, body);
}

std::optional<Reply> ofAnotherDocument(const Reply& honest)
{
    Json body = Json::parse(honest.body);
    if (!body.contains("uuid"))
        return std::nullopt;
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

// A refused call has no document whose status could be changed, and an unfinished one has no result.
std::optional<Reply> asFailed(const Reply& honest, const Json& error)
{
    if (honest.status != 200)
        return std::nullopt;
    Json body = Json::parse(honest.body);
    body["status"] = "fail";
    body["error"] = error;
    body["payload"] = nullptr;
    return jsonReply(200, body);
}

std::optional<Reply> asUnfinished(const Reply& honest, TimePoint now)
{
    if (honest.status != 200)
        return std::nullopt;
    return waitingReply(Json::parse(honest.body)["uuid"], serviceError(ErrorCode::NotReady), now);
}

Reply htmlPage(int status)
{
    const std::string title = std::to_string(status) + " fremulator";
    return {.status = status,
        .contentType = "text/html; charset=utf-8",
        .body = "<html>\r\n<head><title>" + title + "</title></head>\r\n<body><h1>" + title +
                "</h1></body>\r\n</html>\r\n"};
}

std::optional<Reply> changedReply(const Fault& fault, const Call& call, const Reply& honest, TimePoint now)
{
    const bool report = fault.endpoint == Endpoint::Report;
    const auto ifAccepted = honest.status == 200 ? std::optional(honest) : std::nullopt;
    switch (fault.effect) {
    case Effect::Error:
        return withError(fault, call, honest, now);
    case Effect::Html:
        return htmlPage(fault.status);
    case Effect::Empty:
        return Reply{.status = fault.status};
    case Effect::NotJson:
        return Reply{.status = honest.status, .body = "this is not JSON"};
    case Effect::OtherDocument:
        return ofAnotherDocument(honest);
    case Effect::WithoutKey:
        return withoutKey(honest, fault.key);
    case Effect::Fail:
        return report ? asFailed(honest, errorOf(fault.failure, fault.code)) : ifAccepted;
    case Effect::Never:
        return report ? asUnfinished(honest, now) : ifAccepted;
    case Effect::OldToken:
        return ifAccepted;
    default:
        return honest;
    }
}

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

Json errorOf(Failure failure)
{
    return errorOf(failure, infoOf(failure).code);
}

Json errorOf(Failure failure, ErrorCode code)
{
    const FailureInfo& info = infoOf(failure);
    return {{"code", toNumber(code)}, {"text", info.text}, {"type", info.name}};
}

std::optional<Answer> misbehave(const Fault& fault, const Call& call, const Reply& honest, TimePoint now)
{
    const auto reply = changedReply(fault, call, honest, now);
    return reply ? std::optional(Answer{.reply = *reply, .wire = wireOf(fault)}) : std::nullopt;
}

} // namespace emulator
