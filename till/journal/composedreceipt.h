#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace till {

/// A receipt as it is about to be posted, reduced to what tells it from others.
struct ComposedReceipt
{
    /// Address of the service and group: what the id is unique in.
    QString fiscalRegister;
    QString id;
    /// Of the content, without id and time of composing.
    QByteArray digest;
};

/// Reads the body of a request to register a receipt. The order of keys and the spelling of numbers do not
/// matter.
[[nodiscard]] ComposedReceipt readComposed(const QUrl& url, const QByteArray& body);

} // namespace till
