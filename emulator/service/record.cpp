#include "emulator/service/record.h"

#include "emulator/protocol/mask.h"

#include <optional>

namespace emulator {

namespace {

// Of a login that is refused as much is recorded; a body could bring one of a mebibyte.
constexpr std::size_t longestLogin = 1024;

// A hundred thousand recordings of a mebibyte each would be more than a machine has.
std::string beginningOf(std::string text)
{
    constexpr std::size_t most = 64 * 1024;
    if (text.size() > most) {
        const std::size_t more = text.size() - most;
        text.resize(most);
        text += "… (" + std::to_string(more) + " bytes more)";
    }
    return text;
}

/// The error code that a reply speaks of, if any.
std::optional<int> codeIn(const Reply& reply)
{
    const Json body = Json::parse(reply.body, nullptr, false);
    const bool error = body.is_object() && body.contains("error") && body["error"].is_object();
    return error && body["error"].contains("code") ? std::optional(body["error"]["code"].get<int>())
                                                   : std::nullopt;
}

std::string describe(const Fault* fault)
{
    if (fault == nullptr)
        return {};
    const std::string what =
        std::string(nameOf(fault->phase)) + " " + std::string(infoOf(fault->effect).name);
    return fault->name.empty() ? what : fault->name + " (" + what + ")";
}

} // namespace

Exchange recordOf(const Call& call, const Request& request, const Answer& answer, const Fault* fault)
{
    const std::string bytes = answer.bytes(request.keepAlive);
    return {.endpoint = call.endpoint,
        .groupCode = call.group,
        .externalId = call.externalId,
        .uuid = call.uuid,
        .login = call.login.substr(0, longestLogin),
        .request = beginningOf(maskedRequest(request, call)),
        .answer = beginningOf(maskedAnswer(bytes, call)),
        .status = bytes.empty() ? 0 : answer.reply.status,
        .code = bytes.empty() ? std::nullopt : codeIn(answer.reply),
        .fault = describe(fault)};
}

} // namespace emulator
