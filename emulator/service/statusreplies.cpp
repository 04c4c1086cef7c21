#include "emulator/service/statusreplies.h"

#include "emulator/http/jsonreply.h"
#include "emulator/protocol/errors.h"
#include "emulator/protocol/replies.h"

namespace emulator {

namespace {

// The mask of such addresses has not been published.
Json warningsAbout(const Document& document)
{
    const std::string& url = document.callbackUrl;
    if (url.empty() || url.starts_with("http://") || url.starts_with("https://"))
        return nullptr;
    return {{"callback_url", "PatternMismatch: #/service.callback_url"}};
}

} // namespace

Reply waitingReply(const Document& document, TimePoint now)
{
    return waitingReply(document.uuid, serviceError(ErrorCode::NotReady), now);
}

Reply finishedReply(const Document& document, TimePoint now)
{
    const bool done = document.outcome == Outcome::Done;
    return jsonReply(
        200, {{"uuid", document.uuid}, {"error", document.error}, {"status", done ? "done" : "fail"},
                 {"payload", document.payload}, {"warnings", warningsAbout(document)},
                 {"timestamp", moscowTime(now)}, {"group_code", document.groupCode},
                 {"daemon_code", "fremulator"}, {"device_code", document.deviceCode},
                 {"external_id", document.externalId}, {"callback_url", document.callbackUrl}});
}

} // namespace emulator
