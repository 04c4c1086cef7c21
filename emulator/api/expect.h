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

/// Judges the store by the query of a request. `group`, `external_id` (with `*` and `?`), `operation` and
/// `text` say which documents are meant; `count` (1 unless given) how many there must be; `total` (roubles)
/// and `status` (wait, done, fail) what each of them must have; `wire_requests` how many register calls of
/// that operation, if one is given, each id must have brought. Throws JsonError for a parameter that is
/// unknown, empty, given twice or unreadable, and for `wire_requests` together with `text`.
[[nodiscard]] Verdict expect(const Request& request, Store& store, const Service& service);

} // namespace emulator
