#pragma once

#include <QString>

#include <functional>

/// How a call ended: "returned", or the class of what it threw with its Russian text after a colon.
[[nodiscard]] QString outcomeOf(const std::function<void()>& call);
