#pragma once

#include "bench/baselines/contender.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace bench {

/// A file of golden/; ends the program when there is none.
[[nodiscard]] QByteArray goldenFile(const QString& name);

/// The fiscal sign that the responder answers.
inline constexpr std::int64_t goldenSign = 3449555941;

/// Ends the program unless the request of the sample sale of so many lines is, but for its time, the one of
/// golden/: byte for byte up to 100 lines, by its SHA-256 above.
void requireGolden(const char* contender, const QByteArray& request, int lines);

/// Ends the program with a message unless the condition holds.
void require(const char* contender, bool condition, const QString& what);

/// What a recording responder was sent last.
[[nodiscard]] QByteArray lastReceipt(const Endpoint& recorder);

/// Lets a contender sell once to a recording responder; ends the program unless it brought the fiscal sign
/// and requireGolden() takes what was sent.
template <typename Sell>
void requireGoldenSale(const char* contender, const Endpoint& recorder, int lines, const Sell& sell)
{
    require(contender, sell() == goldenSign, QStringLiteral("another answer"));
    requireGolden(contender, lastReceipt(recorder), lines);
}

} // namespace bench
