#pragma once

#include "emulator/values/json.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace emulator {

/// Something that was given as JSON makes no sense; the message names the key and what is expected.
class JsonError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Takes keys out of a JSON object one by one and complains of what is left. Everything throws JsonError.
class JsonReader
{
public:
    /// `json` is borrowed; `where` begins the messages.
    JsonReader(const Json& json, std::string where);

    /// An empty text when the key is missing.
    [[nodiscard]] std::string text(const char* key);
    [[nodiscard]] std::int64_t integer(
        const char* key, std::int64_t fallback, std::int64_t low, std::int64_t high);
    [[nodiscard]] bool boolean(const char* key, bool fallback);
    [[nodiscard]] std::vector<std::string> texts(const char* key, std::vector<std::string> fallback);
    /// The array under the key, an empty one when it is missing.
    [[nodiscard]] const Json& array(const char* key);
    /// Null when the key is missing.
    [[nodiscard]] const Json* take(const char* key);

    void refuseTheRest() const;

private:
    const Json& object;
    std::string place;
    std::vector<std::string> taken;
};

} // namespace emulator
