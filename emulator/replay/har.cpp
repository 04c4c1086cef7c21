#include "emulator/replay/har.h"

#include "emulator/values/jsonreader.h"

#include <algorithm>
#include <cctype>
#include <openssl/evp.h>

namespace emulator {

namespace {

// The message of the parser would quote the text.
Json parsed(const std::string& text)
{
    if (isTooDeep(text))
        throw JsonError("is nested too deeply for a HAR");
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        throw JsonError("line " + std::to_string(1 + std::count(text.begin(), end, '\n')) +
                        ": is neither a HAR nor a line of JSON with request and answer");
    }
}

const Json& object(JsonReader& reader, const char* key, const std::string& where)
{
    const Json* found = reader.take(key);
    if (found == nullptr || !found->is_object())
        throw JsonError(where + "." + key + " must be an object");
    return *found;
}

std::string requiredText(JsonReader& reader, const char* key, const std::string& where)
{
    std::string text = reader.text(key);
    if (text.empty())
        throw JsonError(where + "." + key + " must be a text that is not empty");
    return text;
}

std::string decoded(std::string text, const std::string& where)
{
    std::erase_if(text, [](unsigned char c) { return std::isspace(c) != 0; });
    std::string bytes(text.size(), '\0');
    const int length = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    if (length < 0)
        throw JsonError(where + ".text must be base64, as encoding says");
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    bytes.resize(static_cast<std::size_t>(length) - padding);
    return bytes;
}

std::string keyIn(const Json& json, const std::string& where)
{
    JsonReader reader(json, where);
    Request request{.method = requiredText(reader, "method", where)};
    const std::string url = requiredText(reader, "url", where);
    const std::size_t host = url.find("://");
    const std::size_t path = host == std::string::npos ? host : url.find('/', host + 3);
    setTarget(request, path == std::string::npos ? "/" : std::string_view(url).substr(path));
    return keyOf(request);
}

Answer answerIn(const Json& json, const std::string& where)
{
    constexpr int highest = 999;
    JsonReader reader(json, where);
    const auto status = reader.integer("status", -1, -1, highest);
    // Browsers write 0 where there was no answer.
    if (status != 0 && status < 100)
        throw JsonError(where + ".status must be 0 or from 100 to 999");
    const std::string inside = where + ".content";
    JsonReader content(object(reader, "content", where), inside);
    std::string type = content.text("mimeType");
    std::string text = content.text("text");
    const Json* size = content.take("size");
    if (text.empty() && size != nullptr && size->is_number() && *size > 0)
        throw JsonError(inside + ".text is missing although size is above 0");
    const std::string encoding = content.text("encoding");
    if (!encoding.empty() && encoding != "base64")
        throw JsonError(inside + ".encoding must be base64 where there is one");
    if (encoding == "base64")
        text = decoded(text, inside);
    return recordedAnswer(static_cast<int>(status), std::move(type), std::move(text));
}

} // namespace

Recording readHar(const std::string& text)
{
    const Json json = parsed(text);
    if (!valueOf(json, "log").is_object())
        throw JsonError("is neither a HAR, an object with log, nor lines of JSON with request and answer");
    JsonReader reader(json, "the file");
    JsonReader log(object(reader, "log", "the file"), "log");
    const Json& entries = log.array("entries");
    Recording recording;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string where = "log.entries[" + std::to_string(i) + "]";
        JsonReader entry(entries[i], where);
        const std::string key = keyIn(object(entry, "request", where), where + ".request");
        if (!key.empty())
            recording.push_back({key, answerIn(object(entry, "response", where), where + ".response")});
    }
    return recording;
}

} // namespace emulator
