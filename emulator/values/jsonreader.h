#pragma once

#include "emulator/values/json.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace emulator {

/// Input is not what was expected; the message names the key and the expectation.
class JsonError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads the keys of a JSON object one by one and then rejects those left over. Every function throws
/// JsonError.
class JsonReader
{
public:
    /// `json` is borrowed; messages start with `where`.
    JsonReader(const Json& json, std::string where);

    /// An empty text if the key is missing.
    [[nodiscard]] std::string text(const char* key);
    [[nodiscard]] std::int64_t integer(
        const char* key, std::int64_t fallback, std::int64_t low, std::int64_t high);
    [[nodiscard]] bool boolean(const char* key, bool fallback);
    [[nodiscard]] std::vector<std::string> texts(const char* key, std::vector<std::string> fallback);
    /// An empty array if the key is missing.
    [[nodiscard]] const Json& array(const char* key);
    /// Null if the key is missing.
    [[nodiscard]] const Json* take(const char* key);

    /// Throws if the object has a key that has not been read.
    void rejectUnknownKeys() const;

private:
    const Json& object;
    std::string place;
    std::vector<std::string> taken;
};

} // namespace emulator
