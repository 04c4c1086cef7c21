#pragma once

#include "host/export.h"
#include "host/records/fiscaldocument.h"

#include <QJsonObject>
#include <QString>

/// What a register that is a web service offers in addition to AbstractFrDriver. Obtained from the driver by
/// dynamic_cast.
class HOST_EXPORT VposFrDriver
{
public:
    virtual ~VposFrDriver();

    /// Sends the collected receipt without waiting for its registration; returns the identifier that the
    /// service has assigned to it. Blocks until the service has answered. Throws what the driver throws when
    /// the service rejects the receipt or does not answer.
    virtual QString documentClose(const FiscalDocument& document) = 0;
    /// Asks the service about a document; returns the complete answer. Blocks until the service has answered;
    /// throws as documentClose() does.
    virtual QJsonObject getDocumentInfo(const QString& uuid) = 0;
    /// The service's last answer; empty when there has been none since the receipt was opened.
    virtual QJsonObject getLastResponse() const = 0;
};
