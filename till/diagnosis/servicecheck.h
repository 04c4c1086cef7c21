#pragma once

#include "till/diagnosis/finding.h"
#include "till/wire/serviceanswer.h"

#include <QDateTime>

#include <optional>

namespace hostruntime {
struct PeerCertificate;
}

namespace till {

class Session;

/// Asks the service for a token and about a document that does not exist: two exchanges, and nothing is
/// registered. The session must not be connected yet.
[[nodiscard]] QList<Finding> checkService(Session& session);

// What the answers say.

/// `then` is the service's time, `now` this machine's.
[[nodiscard]] Finding judgeClock(const QDateTime& then, const QDateTime& now);
[[nodiscard]] Finding judgeCertificate(
    const std::optional<hostruntime::PeerCertificate>& certificate, const QDateTime& now);
/// `answer` is the one about a document that does not exist.
[[nodiscard]] Finding judgeGroup(const ServiceAnswer& answer, const QString& group);

} // namespace till
