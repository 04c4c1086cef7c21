#pragma once

#include "frbase/basicfrdriver.h"
#include "host/records/efrdriver.h"
#include "host/records/fdrequisite.h"
#include "host/records/frposition.h"
#include "host/vposfrdriver.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

class AtolOnlineSettings;

namespace atolonline {
class CommandProcessor;
}

/// A fiscal register without a device: collects a sale receipt in memory and has the cloud service register
/// it.
///
/// The course of a receipt: connect() once, then checkOpen(), setRequisite() for the buyer's contact (1008,
/// required) and the taxation system (1055), checkAddPosition() and checkPay() as often as needed, then
/// either checkClose(), which waits for the fiscal result that getFiscalInfo() returns, or documentClose(),
/// which does not wait. Closing keeps the receipt until the next checkOpen(), so a failed close may be
/// repeated with the same internal identifier, by which the service recognises the receipt.
///
/// Only sales are registered. The order of the calls is not enforced. All calls come from one thread and
/// block it. Failures of the service reach the host as the exceptions of atolonline::CommandProcessor. When
/// the token has expired, it is renewed and the call repeated, as often as the service asks for it; nothing
/// else is ever repeated.
class AtolOnlineFRDriver : public BasicFrDriver, public VposFrDriver
{
public:
    /// The settings are borrowed and must outlive the driver.
    explicit AtolOnlineFRDriver(AtolOnlineSettings* cloudSettings);
    ~AtolOnlineFRDriver() override;

    /// Obtains a token unless one is held.
    void connect() override;
    /// Starts a sale. Throws FrCommandException for any other type of document, and then keeps the previous
    /// receipt.
    void checkOpen(const FiscalDocument& document) override;
    /// Sends the receipt and waits for its fiscal result, without a time limit, asking once per request
    /// interval. Throws FrWorkWithServiceException, before anything is sent, if the receipt has no buyer's
    /// contact. Returns an empty object; the result is in getFiscalInfo().
    QJsonObject checkClose(const FiscalDocument& document) override;
    void checkAddPosition(const FrPosition& position) override;
    /// Adds the sum to what has been paid with the same type.
    void checkPay(const FrPayment& payment) override;
    /// The local time of this machine: the cloud register has no clock of its own.
    QDateTime getDateTime() override;
    /// Keeps requisites 1008 and 1055 for the receipt; any other is only logged.
    void setRequisite(const FdRequisite& requisite) override;

    /// Returns the uuid of the existing document if the service already has one with this identifier.
    QString documentClose(const FiscalDocument& document) override;
    QJsonObject getDocumentInfo(const QString& uuid) override;
    [[nodiscard]] QJsonObject getLastResponse() const override;

private:
    template <typename Call>
    auto renewingToken(Call call);
    void prepareCheckClose();
    [[nodiscard]] QString submit(const FiscalDocument& document);
    void waitForResult(const QString& uuid);
    void updateFiscalInfo(const QMap<QString, QVariant>& payload);

    AtolOnlineSettings* settings;
    QMap<int, double> payments;
    QList<FrPosition> positions;
    QMap<EFrDriver::RequisiteTypes, FdRequisite> requisites;
    QSharedPointer<atolonline::CommandProcessor> commandProcessor;
};
