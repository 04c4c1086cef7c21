#include "emulator/service/replies.h"

namespace emulator {

namespace {

Reply statusReply(
    const Document& document, const char* word, const Json& error, const Json& payload, const TimePoint now)
{
    return jsonReply(200, {{"uuid", document.uuid}, {"error", error}, {"status", word}, {"payload", payload},
                              {"timestamp", moscowTime(now)}, {"group_code", document.groupCode},
                              {"daemon_code", "fremulator"}, {"device_code", document.deviceCode},
                              {"external_id", document.externalId}, {"callback_url", document.callbackUrl}});
}

} // namespace

Reply jsonReply(const int status, const Json& body)
{
    return {.status = status, .body = toLine(body)};
}

Reply tokenReply(const std::string& token, const TimePoint now)
{
    return jsonReply(200, {{"error", nullptr}, {"token", token}, {"timestamp", moscowTime(now)}});
}

Reply acceptedReply(const std::string& uuid, const TimePoint now)
{
    return jsonReply(
        200, {{"uuid", uuid}, {"status", "wait"}, {"error", nullptr}, {"timestamp", moscowTime(now)}});
}

Reply duplicateReply(const std::string& firstUuid, const TimePoint now)
{
    const ServiceError& exists = serviceError(33);
    return jsonReply(exists.httpStatus, {{"uuid", firstUuid}, {"status", "wait"},
                                            {"error", errorObject(exists)}, {"timestamp", moscowTime(now)}});
}

Reply errorReply(
    const Endpoint endpoint, const ServiceError& error, const TimePoint now, const std::string& details)
{
    Json body{{"error", errorObject(error, details)}};
    if (endpoint == Endpoint::Sell || endpoint == Endpoint::Report)
        body["status"] = "fail";
    if (endpoint == Endpoint::Report)
        body["payload"] = nullptr;
    body["timestamp"] = moscowTime(now);
    return jsonReply(error.httpStatus, body);
}

Reply waitingReply(const Document& document, const TimePoint now)
{
    return statusReply(document, "wait", errorObject(serviceError(34)), nullptr, now);
}

Reply finishedReply(const Document& document, const TimePoint now)
{
    const bool done = document.outcome == Outcome::Done;
    return statusReply(document, done ? "done" : "fail", document.error, document.payload, now);
}

} // namespace emulator
