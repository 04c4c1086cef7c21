#pragma once

#include <QByteArray>

#include <rapidjson/document.h>
#include <rapidjson/reader.h>

namespace till {

/// How receipts are parsed. Numbers come as texts, because the reader's own exact conversion is undefined for
/// a zero with an exponent ("0e300").
inline constexpr unsigned jsonParseFlags = rapidjson::kParseNumbersAsStringsFlag |
                                           rapidjson::kParseValidateEncodingFlag |
                                           rapidjson::kParseIterativeFlag;

/// Parses JSON in UTF-8. A number without fraction and exponent that fits into 64 bits is an integer; any
/// other is the nearest double, and one beyond its range an error.
[[nodiscard]] rapidjson::ParseResult parseJson(const QByteArray& text, rapidjson::Document& document);

} // namespace till
