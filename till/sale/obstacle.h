#pragma once

#include "till/causes/causes.h"

#include <QString>

namespace till {

/// Why the service did not answer, for people.
struct Obstacle
{
    /// As in "Cannot reach X: the certificate has expired".
    QString cause;
    /// A whole sentence.
    QString advice;
    NextStep next = NextStep::Rerun;
};

/// What the transport's words about a failed exchange mean; the words themselves where that is not known.
[[nodiscard]] Obstacle obstacleIn(const QString& failure);

} // namespace till
