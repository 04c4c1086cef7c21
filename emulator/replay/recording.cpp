#include "emulator/replay/recording.h"

#include "emulator/protocol/call.h"
#include "emulator/replay/har.h"
#include "emulator/replay/jsonlines.h"
#include "emulator/values/jsonreader.h"
#include "emulator/values/plaintext.h"

#include <fstream>
#include <iterator>

namespace emulator {

namespace {

constexpr auto whatToDo = ". Correct this place, or record the exchange again.";

std::string contentOf(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    // A folder can be opened, but not read.
    if (!stream.is_open() || stream.bad())
        throw JsonError("cannot read " + file + ". Check its name, or record the exchange again.");
    if (text.empty())
        throw JsonError(file + ": is empty. Record the exchange with the service again.");
    return text;
}

} // namespace

std::string keyOf(const Request& request)
{
    const Call call = readCall(request, true);
    switch (call.endpoint) {
    case Endpoint::Token:
        return "getToken";
    case Endpoint::Sell:
        return call.group + "/" + call.operation;
    case Endpoint::Report:
        return call.group + "/report/" + call.uuid;
    case Endpoint::Callback:
    case Endpoint::Unknown:
        break;
    }
    return {};
}

Answer recordedAnswer(int status, std::string contentType, std::string body)
{
    if (status == 0)
        return {.wire = {.send = Wire::Send::Nothing, .end = Wire::End::Close}};
    Reply reply{.status = status, .body = std::move(body)};
    if (!contentType.empty() && isPlainText(contentType))
        reply.contentType = std::move(contentType);
    return {.reply = std::move(reply)};
}

Recording readRecording(const std::string& file)
{
    const std::string text = contentOf(file);
    Recording recording;
    try {
        recording = areJsonLines(text) ? readJsonLines(text) : readHar(text);
    } catch (const JsonError& error) {
        throw JsonError(file + ": " + error.what() + whatToDo);
    }
    if (recording.empty())
        throw JsonError(file + ": has no call to an address with " + std::string(basePath) +
                        ". Record the exchange with the service again.");
    return recording;
}

} // namespace emulator
