#include "till/receipts/jsonreader.h"

#include <QByteArrayView>

#include <rapidjson/memorystream.h>

#include <cmath>

namespace till {

namespace {

using rapidjson::SizeType;

// Hands everything on to a document, the numbers converted.
class Builder
{
public:
    explicit Builder(rapidjson::Document& document)
        : out(document)
    {
    }

    bool Null() { return out.Null(); }
    bool Bool(bool value) { return out.Bool(value); }
    bool String(const char* text, SizeType length, bool copy) { return out.String(text, length, copy); }
    bool Key(const char* text, SizeType length, bool copy) { return out.Key(text, length, copy); }
    bool StartObject() { return out.StartObject(); }
    bool EndObject(SizeType members) { return out.EndObject(members); }
    bool StartArray() { return out.StartArray(); }
    bool EndArray(SizeType elements) { return out.EndArray(elements); }
    bool RawNumber(const char* text, SizeType length, bool)
    {
        const QByteArrayView number(text, static_cast<qsizetype>(length));
        bool isInteger = false;
        const qlonglong integer = number.toLongLong(&isInteger);
        if (isInteger)
            return out.Int64(integer);
        const double value = number.toDouble();
        return !std::isinf(value) && out.Double(value);
    }

    // Never called: all numbers come as texts.
    bool Int(int value) { return out.Int(value); }
    bool Uint(unsigned value) { return out.Uint(value); }
    bool Int64(std::int64_t value) { return out.Int64(value); }
    bool Uint64(std::uint64_t value) { return out.Uint64(value); }
    bool Double(double value) { return out.Double(value); }

private:
    rapidjson::Document& out;
};

} // namespace

rapidjson::ParseResult parseJson(const QByteArray& text, rapidjson::Document& document)
{
    rapidjson::MemoryStream stream(text.constData(), static_cast<std::size_t>(text.size()));
    rapidjson::ParseResult result;
    auto read = [&](rapidjson::Document& target) {
        Builder builder(target);
        rapidjson::Reader reader;
        result = reader.Parse<jsonParseFlags>(stream, builder);
        return !result.IsError();
    };
    document.Populate(read);
    // The builder refuses nothing else.
    if (result.Code() == rapidjson::kParseErrorTermination)
        result.Set(rapidjson::kParseErrorNumberTooBig, result.Offset());
    return result;
}

} // namespace till
