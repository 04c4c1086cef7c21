#pragma once

#include <QDateTime>
#include <QString>

namespace hostruntime {

/// What a server has shown to prove who it is.
struct PeerCertificate
{
    QString subject;
    QString issuer;
    /// Invalid when the certificate does not say it in a known form.
    QDateTime expires;
};

} // namespace hostruntime
