#pragma once

#include "till/config/registerconfig.h"
#include "till/diagnosis/finding.h"

namespace till {

/// What can be said of a configuration without asking anybody: the service's address, the account and the
/// company's data.
[[nodiscard]] QList<Finding> checkConfiguration(const RegisterConfig& config);

} // namespace till
