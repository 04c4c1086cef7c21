#pragma once

#include "queue/store/entry.h"

#include <chrono>
#include <cstdio>

namespace bench {

/// A receipt as large as one of a few lines.
[[nodiscard]] inline queue::NewEntry receiptNumber(int i)
{
    return {
        QString::number(i), QByteArray(700, 'x'), QByteArray(64, 'd'), QStringLiteral("receipts.jsonl"), i};
}

/// Microseconds of each of so many that the action does.
template <typename Action>
[[nodiscard]] double microsecondsOfEach(int many, const Action& action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
    return taken.count() / many;
}

} // namespace bench
