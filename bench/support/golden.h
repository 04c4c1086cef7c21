#pragma once

#include "bench/baselines/contender.h"

#include <QByteArray>
#include <QString>

namespace bench {

/// The fiscal sign in the responder's answers.
inline constexpr std::int64_t goldenSign = 3449555941;

/// Ends the program with a message unless the condition holds.
void require(const char* name, bool condition, const QString& what);

/// Ends the program unless the request, apart from its time, is the golden one for the sample sale of so many
/// lines: byte for byte up to 100 lines, by its SHA-256 above.
void requireGolden(const char* name, const QByteArray& request, int lines);

/// Has the contender register one sale at the responder; ends the program unless the answer holds
/// goldenSign and requireGolden() accepts what was sent.
void requireGoldenSale(const char* name, Contender& contender, const Endpoint& endpoint, int lines);

} // namespace bench
