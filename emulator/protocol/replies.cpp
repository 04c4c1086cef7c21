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

Reply duplicateReply(const std::string& firstUuid, TimePoint now)
{
    const ServiceError& exists = serviceError(ErrorCode::DuplicateId);
    return jsonReply(exists.httpStatus, {{"uuid", firstUuid}, {"status", "wait"},
                                            {"error", errorObject(exists)}, {"timestamp", moscowTime(now)}});
}

Reply errorReply(Endpoint endpoint, const ServiceError& error, TimePoint now, const std::string& details)
{
    Json body{{"error", errorObject(error, details)}};
    if (endpoint == Endpoint::Sell || endpoint == Endpoint::Report)
        body["status"] = "fail";
    if (endpoint == Endpoint::Report)
        body["payload"] = nullptr;
    body["timestamp"] = moscowTime(now);
    return jsonReply(error.httpStatus, body);
}

} // namespace emulator
