#pragma once

#include <QString>

namespace till {

/// Why the service cannot be reached, for people.
struct Obstacle
{
    /// As in "Cannot reach X: the certificate has expired".
    QString cause;
    /// A whole sentence.
    QString advice;
};

/// What the transport's words about a failed exchange mean; the words themselves where that is not known.
[[nodiscard]] Obstacle obstacleIn(const QString& failure);

} // namespace till
