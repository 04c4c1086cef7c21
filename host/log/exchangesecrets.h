#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

/// Which values of an exchange with the service are secret.
namespace hostruntime::secrets {

/// Registers the secrets of a request: the password in the address and the key "pass" of the body as
/// passwords, the header "token" (in any case) as a token, the key "login" beside "pass" as a login, and
/// "email" and "phone" of a receipt's "client" as personal.
HOST_EXPORT void addFromRequest(
    const QUrl& url, const QHash<QString, QString>& headers, const QByteArray& body);

/// The values of the header "token" in any case.
[[nodiscard]] QStringList tokensIn(const QHash<QString, QString>& headers);

/// Registers the key "token" of a reply as a token. `parsed` is the body in Qt's variant types, invalid
/// when it is not JSON: then every "token" in the text counts, even one that is cut off.
HOST_EXPORT void addFromReply(const QByteArray& body, const QVariant& parsed);

/// The password in an address, of a proxy or another, as it is written there and percent-decoded; nothing
/// when there is none.
[[nodiscard]] HOST_EXPORT QStringList passwordsIn(const QString& address);

/// The address with the mask in place of its password. What could be part of a password counts as such.
[[nodiscard]] HOST_EXPORT QString withoutPassword(const QString& address);

} // namespace hostruntime::secrets
