#include "emulator/replay/jsonlines.h"

#include "emulator/values/endpoint.h"
#include "emulator/values/jsonreader.h"

#include <boost/beast/core/string.hpp>

#include <charconv>
#include <sstream>

namespace emulator {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headEnd = "\r\n\r\n";

// Removes the text before `separator`, and the separator itself, from `rest` and returns the text.
std::string_view takeUntil(std::string_view& rest, std::string_view separator)
{
    const std::string_view part = rest.substr(0, rest.find(separator));
    rest.remove_prefix(std::min(part.size() + separator.size(), rest.size()));
    return part;
}

std::string keyOfRequest(std::string_view text, const std::string& where)
{
    std::string_view line = text.substr(0, text.find(lineEnd));
    Request request{.method = std::string(takeUntil(line, " "))};
    const std::string_view target = takeUntil(line, " ");
    if (!target.starts_with('/') || !line.starts_with("HTTP/"))
        throw JsonError(where + ".request must begin with a line such as GET /possystem/v4/... HTTP/1.1");
    setTarget(request, target);
    return keyOf(request);
}

int statusIn(std::string_view line, const std::string& where)
{
    const std::string_view version = takeUntil(line, " ");
    const std::string_view number = takeUntil(line, " ");
    int status = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), status);
    const bool whole = error == std::errc() && end == number.data() + number.size();
    if (!version.starts_with("HTTP/") || !whole || status < 100 || status > 999)
        throw JsonError(where + ".answer must begin with a line such as HTTP/1.1 200 OK, or be empty");
    return status;
}

// The emulator's own recording ends like this where a message was too long for it.
bool isCutOff(std::string_view text)
{
    return text.ends_with(" bytes more)") && text.find("… (") != std::string_view::npos;
}

Answer answerOf(std::string_view text, const std::string& where)
{
    if (text.empty())
        return recordedAnswer(0, {}, {});
    if (isCutOff(text))
        throw JsonError(where + ".answer is cut off; an answer of a recording must be whole");
    const bool hasHeadEnd = text.find(headEnd) != std::string_view::npos;
    std::string_view head = takeUntil(text, headEnd);
    const int status = statusIn(takeUntil(head, lineEnd), where);
    if (!hasHeadEnd)
        throw JsonError(
            where + ".answer must have an empty line after its headers, with line ends as \\r\\n");
    std::string type;
    while (!head.empty()) {
        std::string_view value = takeUntil(head, lineEnd);
        const std::string name(takeUntil(value, ":"));
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        if (boost::beast::iequals(name, "Content-Type"))
            type = value;
        if (boost::beast::iequals(name, "Transfer-Encoding"))
            throw JsonError(where + ".answer must have its body in one piece, without Transfer-Encoding");
    }
    return recordedAnswer(status, type, std::string(text));
}

RecordedCall readLine(const std::string& line, const std::string& where)
{
    const Json json = parseShallow(line);
    if (!json.is_object())
        throw JsonError(where + " must be a JSON object with request and answer");
    JsonReader reader(json, where);
    if (reader.text("endpoint") == nameOf(Endpoint::Callback))
        return {};
    if (!json.contains("answer"))
        throw JsonError(where + ".answer must be a text, empty if there was no answer");
    const std::string key = keyOfRequest(reader.text("request"), where);
    return {key, key.empty() ? Answer() : answerOf(reader.text("answer"), where)};
}

} // namespace

bool areJsonLines(const std::string& text)
{
    std::string_view lines = text;
    lines.remove_prefix(std::min(lines.find_first_not_of(" \t\r\n"), lines.size()));
    const Json json = parseShallow(lines.substr(0, lines.find('\n')));
    return json.is_object() && json.contains("request");
}

Recording readJsonLines(const std::string& text)
{
    Recording recording;
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos)
            continue;
        RecordedCall call = readLine(line, "line " + std::to_string(number));
        if (!call.key.empty())
            recording.push_back(std::move(call));
    }
    return recording;
}

} // namespace emulator
