#include "emulator/service/record.h"

#include "emulator/protocol/mask.h"
#include "emulator/values/money.h"

#include <optional>

namespace emulator {

namespace {

// A refused login is recorded up to this length; the body of the call could contain one of a mebibyte.
constexpr std::size_t longestLogin = 1024;

std::optional<int> errorCodeIn(const Reply& reply)
{
    const Json body = Json::parse(reply.body, nullptr, false);
    // A recorded answer may have anything there.
    const Json& code = valueOf(valueOf(body, "error"), "code");
    return code.is_number_integer() ? std::optional(code.get<int>()) : std::nullopt;
}

std::optional<std::int64_t> totalOf(const Json& body)
{
    return wholePartsOf(valueOf(valueOf(body, "receipt"), "total"), 100);
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

// Tens of thousands of recordings of a mebibyte each would not fit into memory.
std::string truncated(std::string text)
{
    constexpr std::size_t longest = 64 * 1024;
    if (text.size() > longest) {
        const std::size_t more = text.size() - longest;
        text.resize(longest);
        text += "… (" + std::to_string(more) + " bytes more)";
    }
    return text;
}

Exchange recordOf(const Call& call, const Request& request, const Answer& answer, const Fault* fault)
{
    const std::string bytes = answer.bytes(request.keepAlive);
    return {.endpoint = call.endpoint,
        .groupCode = call.group,
        .externalId = call.externalId,
        .uuid = call.uuid,
        .login = call.login.substr(0, longestLogin),
        .request = truncated(maskedRequest(request, call)),
        .answer = truncated(maskedAnswer(bytes, call)),
        .status = bytes.empty() ? 0 : answer.reply.status,
        .code = bytes.empty() ? std::nullopt : errorCodeIn(answer.reply),
        .fault = describe(fault)};
}

Refusal refusalOf(const Call& call, const Exchange& exchange, Json fields)
{
    return {.exchange = exchange,
        .operation = call.operation,
        .totalKopecks = totalOf(call.body),
        .fields = std::move(fields)};
}

} // namespace emulator
