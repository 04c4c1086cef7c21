#pragma once

#include <QString>

#include <functional>

/// How a call ended: "returned", or the class and the Russian text of the exception, as "Class: text".
[[nodiscard]] QString outcomeOf(const std::function<void()>& call);
