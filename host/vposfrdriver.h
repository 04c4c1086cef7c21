#pragma once

#include "host/export.h"
#include "host/records/fiscaldocument.h"

#include <QJsonObject>
#include <QString>

/// What a register behind a web service offers beside AbstractFrDriver. Reached by dynamic_cast from the
/// driver.
class HOST_EXPORT VposFrDriver
{
public:
    virtual ~VposFrDriver();

    /// Sends the collected receipt without waiting for its registration; returns the service's identifier of
    /// it. Blocks for one exchange. Throws what the driver throws when the service refuses or does not
    /// answer.
    virtual QString documentClose(const FiscalDocument& document) = 0;
    /// Asks the service about a document; returns its whole answer. Blocks for one exchange.
    virtual QJsonObject getDocumentInfo(const QString& uuid) = 0;
    /// The service's last answer; empty when there was none since the receipt was opened.
    [[nodiscard]] virtual QJsonObject getLastResponse() const = 0;
};
