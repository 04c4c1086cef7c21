#pragma once

#include "host/records/efrdriver.h"
#include "host/records/fdrequisite.h"
#include "host/records/frposition.h"

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QVariantMap>

class AtolOnlineSettings;
class RestClient;

namespace Log4Qt {
class Logger;
}

namespace atolonline {

/// State of a document as the service tells it.
enum DocumentStatus : int
{
    /// Neither of the following, or missing.
    Unknown = 0,
    Wait = 1,
    Done = 2,
    Fail = 3,
};

/// The client of the cloud fiscalisation service (protocol v4): token, receipt submission, document status.
///
/// The driver owns one for its whole life and uses it from one thread; every request blocks until the
/// transport returns. Call setSettings() before any request.
///
/// Nothing is repeated here: one call of sell() posts the receipt once. Who repeats it after TokenExpired is
/// the driver.
///
/// Every request throws FrWorkWithServiceException "Нет связи с ФР" when there is no reply, and what
/// ExceptionFactory makes of the code when the reply holds an error. The order of the virtual operations is
/// kept.
class CommandProcessor
{
public:
    /// The logger is borrowed and must outlive the processor. The transport comes from
    /// MockFactory<RestClient>.
    explicit CommandProcessor(const Log4Qt::Logger* logger);
    virtual ~CommandProcessor();
    Q_DISABLE_COPY_MOVE(CommandProcessor)

    /// Borrowed; must outlive the processor. Address, login, password and group code are read at each
    /// request; company e-mail, place of settlement and taxpayer number are copied now.
    void setSettings(AtolOnlineSettings* settings);

    /// Makes sure that a token is held; with force always asks for a new one.
    virtual void requestToken(bool force);

    /// The buyer's contact of the next receipts; replaces an e-mail address.
    virtual void setClientPhone(const QString& phone);
    /// The buyer's contact of the next receipts; replaces a telephone.
    virtual void setClientEmail(const QString& email);

    /// Sends a sale receipt; returns the uuid under which the service has queued it, empty when the reply has
    /// none. Throws TokenExpired, and DocumentExists when the internal document id was sent before.
    virtual QString sell(const QList<FrPosition>& positions, const QMap<int, double>& payments,
        const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites);

    /// Asks for the state of a queued document; returns a DocumentStatus.
    virtual int getDocumentStatus(const QString& uuid);

    /// The transport's current reply, checked: not empty, and without an error of the service.
    virtual QVariantMap checkResponse();

    /// The "receipt" object of a request. The company data carry a taxation system only where the requisites
    /// name one.
    [[nodiscard]] QJsonObject createReceipt(const QList<FrPosition>& positions,
        const QMap<int, double>& payments,
        const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites) const;
    /// "wait", "done" and "fail", to the letter; anything else is Unknown.
    [[nodiscard]] static int getStatusFromString(const QString& status);
    /// Identifier of the next receipts, by which the service knows a repeated one.
    void setInternalDocumentId(const QString& id);
    /// Throws when the reply carries an error with a code; logs it in any case.
    void processResponseErrors(const QVariantMap& response) const;

    /// The service's last reply that was not empty, error replies included; empty since sell() began.
    [[nodiscard]] QJsonObject getLastResponse() const { return lastResponse; }
    void clearLastResponse() { lastResponse = {}; }
    /// The "payload" of the last status reply without an error.
    [[nodiscard]] QVariantMap getLastDocumentFiscalInfo() const { return lastDocumentFiscalInfo; }

private:
    AtolOnlineSettings* settings = nullptr;
    QSharedPointer<RestClient> restClient;
    QHash<QString, QString> headers;
    QJsonObject companyInfo;
    QJsonObject clientInfo;
    QString internalDocumentId;
    QJsonObject lastResponse;
    QVariantMap lastDocumentFiscalInfo;
    const Log4Qt::Logger* logger;
};

} // namespace atolonline
