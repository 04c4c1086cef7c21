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
#include <QtGlobal>

class AtolOnlineSettings;
class RestClient;

namespace Log4Qt {
class Logger;
}

namespace atolonline {

/// State of a document, as reported by the service.
enum DocumentStatus : int
{
    /// None of the following, or missing.
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
/// Nothing is repeated here: one call of sell() posts the receipt once. After TokenExpired, it is the driver
/// that repeats the call.
///
/// Every request throws FrWorkWithServiceException "Нет связи с ФР" when there is no reply, and the exception
/// that ExceptionFactory assigns to the code when the reply holds an error. The order of the virtual
/// operations is part of the binary contract.
class CommandProcessor
{
public:
    /// `log` is borrowed and must outlive the processor. The transport comes from MockFactory<RestClient>.
    explicit CommandProcessor(const Log4Qt::Logger* log);
    virtual ~CommandProcessor();
    Q_DISABLE_COPY_MOVE(CommandProcessor)

    /// Borrowed; must outlive the processor. Address, login, password and group code are read at each
    /// request; company e-mail, place of settlement and taxpayer number are copied at once.
    void setSettings(AtolOnlineSettings* value);

    /// Requests a token unless one is held; with `force`, always requests a new one. The held token travels
    /// with the request unless it contains a line break, which no header can carry.
    virtual void requestToken(bool force);

    /// The buyer's contact for the next receipts; replaces an e-mail address.
    virtual void setClientPhone(const QString& phone);
    /// The buyer's contact for the next receipts; replaces a telephone number.
    virtual void setClientEmail(const QString& email);

    /// Sends a sale receipt; `payments` are roubles by payment type. Returns the uuid under which the service
    /// has queued the receipt, empty when the reply has none. Throws TokenExpired, and DocumentExists when
    /// the internal document id has been sent before.
    virtual QString sell(const QList<FrPosition>& positions, const QMap<int, double>& payments,
        const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites);

    /// Asks for the state of a queued document; returns a DocumentStatus. The error DocumentInProgress counts
    /// as Wait.
    virtual int getDocumentStatus(const QString& uuid);

    /// Returns the last reply of the transport; throws when it is empty or holds an error of the service.
    virtual QVariantMap checkResponse();

    /// The "receipt" object of a request. The company data hold a taxation system only if the requisites name
    /// one.
    [[nodiscard]] QJsonObject createReceipt(const QList<FrPosition>& positions,
        const QMap<int, double>& payments,
        const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites) const;
    /// The status for "wait", "done" and "fail", spelt exactly like this; Unknown for anything else.
    [[nodiscard]] static int getStatusFromString(const QString& status);
    /// Identifier of the next receipts, by which the service recognises a repeated one.
    void setInternalDocumentId(const QString& id);
    /// Logs the error in the reply, if any, and throws if it has a code. A code that does not convert to an
    /// int, or does not fit into one, counts as 0, an error without an exception of its own.
    void processResponseErrors(const QVariantMap& response) const;

    /// The last reply of the service that was not empty, error replies included; sell() clears it first.
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
