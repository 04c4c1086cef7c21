#pragma once

#include "emulator/http/http.h"
#include "emulator/service/service.h"
#include "emulator/store/store.h"

namespace emulator {

/// A document as it appears in lists; with `first_field` if it failed because of one.
[[nodiscard]] Json summaryOf(const Document& document, Store& store, const Service& service);

/// A document with everything known about it. `vats` are the sums of VAT as printed on the receipt, `fields`
/// those because of which the document failed.
[[nodiscard]] Json detailsOf(const Document& document, Store& store, const Service& service);

/// A refused call with everything known about it.
[[nodiscard]] Json detailsOf(const Refusal& refusal, Store& store);

/// Documents and refused calls as one list, newest first, and how many there are of each status. Throws
/// JsonError for a bad parameter.
[[nodiscard]] Json receipts(const Request& request, Store& store, const Service& service);

/// The users, without their passwords, and what they may use; whether a recording answers instead.
[[nodiscard]] Json accounts(const ServiceOptions& options, bool replaying);

} // namespace emulator
