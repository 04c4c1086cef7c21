#include "emulator/service/statusreplies.h"

#include "emulator/http/jsonreply.h"
#include "emulator/protocol/errors.h"

namespace emulator {

namespace {

Reply statusReply(
    const Document& document, const char* word, const Json& error, const Json& payload, TimePoint now)
{
    return jsonReply(200, {{"uuid", document.uuid}, {"error", error}, {"status", word}, {"payload", payload},
                              {"timestamp", moscowTime(now)}, {"group_code", document.groupCode},
                              {"daemon_code", "fremulator"}, {"device_code", document.deviceCode},
                              {"external_id", document.externalId}, {"callback_url", document.callbackUrl}});
}

} // namespace

Reply waitingReply(const Document& document, TimePoint now)
{
    return statusReply(document, "wait", errorObject(serviceError(ErrorCode::NotReady)), nullptr, now);
}

Reply finishedReply(const Document& document, TimePoint now)
{
    const bool done = document.outcome == Outcome::Done;
    return statusReply(document, done ? "done" : "fail", document.error, document.payload, now);
}

} // namespace emulator
