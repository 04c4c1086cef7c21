#pragma once

#include "till/sale/result.h"

#include <exception>
#include <functional>
#include <optional>

namespace till {

/// Describes a caught exception: its class name and, for one of the host's, the Russian text.
[[nodiscard]] ErrorInfo describe(const std::exception& exception);

/// Adds the service's own words and the identifier of its error. They go where no developer reads.
void addWords(ErrorInfo& error, const ServiceAnswer& answer);

/// Puts the service's own words in place of the driver's "no connection", which it says of some answers, too.
void preferWordsOfService(ErrorInfo& error);

/// Carries out an action; returns what it threw, nothing when it threw nothing.
[[nodiscard]] std::optional<ErrorInfo> attempt(const std::function<void()>& action);

} // namespace till
