#pragma once

#include <QString>

#include <rapidjson/document.h>

namespace till {

/// What a value breaks of its part of the schema, in the user's words: `name` must be this or that. Empty
/// where the part has no keyword that the value breaks.
[[nodiscard]] QString brokenRule(
    const rapidjson::Value& rule, const rapidjson::Value& value, const QString& name);

} // namespace till
