#pragma once

#include "emulator/http/http.h"
#include "emulator/service/service.h"
#include "emulator/store/store.h"

#include <string>

namespace emulator {

struct Verdict
{
    bool pass = false;
    std::string reason{};
};

/// Checks the stored documents against the query of a request. `group`, `external_id` (with `*` and `?`),
/// `operation` and `text` select documents; `count` (1 by default) is how many there must be; `total`
/// (roubles) and `status` (wait, done, fail) must be those of each; `wire_requests` is how many register
/// calls must have arrived for each id, only those of `operation` if given. Throws JsonError for a parameter
/// that is unknown, empty, repeated or invalid, and for `wire_requests` together with `text`.
[[nodiscard]] Verdict expect(const Request& request, Store& store, const Service& service);

} // namespace emulator
