#include "emulator/protocol/replies.h"

#include "emulator/http/jsonreply.h"

namespace emulator {

Reply tokenReply(const std::string& token, TimePoint now)
{
    return jsonReply(200, {{"error", nullptr}, {"token", token}, {"timestamp", moscowTime(now)}});
}

Reply acceptedReply(const std::string& uuid, TimePoint now)
{
    return jsonReply(
        200, {{"uuid", uuid}, {"status", "wait"}, {"error", nullptr}, {"timestamp", moscowTime(now)}});
}

Reply waitingReply(const std::string& uuid, const ServiceError& error, TimePoint now, const std::string& text)
{
    Json body = Json::object();
    if (!uuid.empty())
        body["uuid"] = uuid;
    body["status"] = "wait";
    body["error"] = errorObject(error, text);
    body["timestamp"] = moscowTime(now);
    return jsonReply(error.httpStatus, body);
}

Reply errorReply(Endpoint endpoint, const ServiceError& error, TimePoint now, const std::string& text)
{
    if (error.keys == Keys::Waiting)
        return waitingReply({}, error, now, text);
    Json body{{"error", errorObject(error, text)}};
    if (error.keys == Keys::Failed)
        body["status"] = "fail";
    if (error.keys == Keys::Failed && endpoint == Endpoint::Report)
        body["payload"] = nullptr;
    body["timestamp"] = moscowTime(now);
    return jsonReply(error.httpStatus, body);
}

} // namespace emulator
