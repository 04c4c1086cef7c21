#pragma once

#include "host/export.h"
#include "host/records/driveroptions.h"
#include "host/records/driverrecords.h"
#include "host/records/efrdriver.h"
#include "host/records/fiscalinfo.h"
#include "host/records/taxsystem.h"
#include "host/tr.h"

#include <QChar>
#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <iosfwd>

class DeviceInfo;
class FdRequisite;
class FiscalDocument;
class FrParameter;
class FrPayment;
class FrPosition;

/// The host's interface to a fiscal register. The order of the operations is part of the binary contract with
/// plugins: a new one goes to the end.
///
/// All operations are called from one thread and block until the register has answered. Failures that concern
/// the host are thrown as exceptions derived from BasicException.
class HOST_EXPORT AbstractFrDriver
{
public:
    using ErrorHandler = std::function<void(const tr::Tr&, const QString&)>;
    using OfdHandler = std::function<void(bool, const tr::Tr&, const QDateTime&)>;

    virtual ~AbstractFrDriver();

    virtual void portOpen() = 0;
    virtual void portClose() = 0;
    virtual void connect() = 0;
    virtual void init() = 0;
    virtual void reinitialize() = 0;
    virtual void reboot(EFrDriver::RebootMode mode) = 0;
    virtual bool setDefaults() = 0;
    virtual QString getDeviceStateDescription() = 0;
    virtual QString getFnStateDescription() = 0;
    virtual void printLastFnDocument() = 0;
    virtual void printFnDocument(long number) = 0;
    virtual FnDocument getFnDocument(unsigned long long number) = 0;
    virtual QString getCountersDescription() = 0;
    virtual QString getParametersDescription() = 0;
    virtual std::ostream& getDump(int from, int to, std::ostream& out) = 0;
    virtual DeviceInfo getDeviceInfo() = 0;
    /// Borrowed; the settings record that the driver reads.
    virtual QObject* getDeviceSettings() const = 0;
    virtual void setFont(const QList<EFrDriver::FontTypes>& fonts) = 0;
    virtual void setLineSpacing(int spacing) = 0;
    virtual void resetFont() = 0;
    virtual bool loadFont(const Font& font) = 0;
    virtual void beep() = 0;
    virtual void drawerOpen() = 0;
    virtual void checkOpen(const FiscalDocument& document) = 0;
    virtual QJsonObject checkClose(const FiscalDocument& document) = 0;
    virtual void checkCancel() = 0;
    virtual void checkWaitForPrint() = 0;
    virtual void cutAfterChecksClosing() = 0;
    virtual void cutPaper() = 0;
    virtual void checkAddPosition(const FrPosition& position) = 0;
    virtual void checkStornoPosition(const FrPosition& position) = 0;
    virtual void checkTotal() = 0;
    virtual void checkPay(const FrPayment& payment) = 0;
    virtual void checkPrint(const QList<QString>& lines) = 0;
    virtual void moneyCheckOpen(hw::fr::CheckType type, const QString& number) = 0;
    virtual void moneyCheckPrint(const QList<QString>& lines) = 0;
    /// `sum` is in roubles.
    virtual QJsonObject moneyCheckClose(double sum) = 0;
    virtual void moneyCheckWaitForPrint() = 0;
    virtual void textDocOpen(hw::fr::CheckType type) = 0;
    virtual void textDocPrint(const QList<QString>& lines) = 0;
    virtual void textDocClose() = 0;
    virtual void barcodePrint(const Barcode& barcode) = 0;
    virtual void vatReport() = 0;
    virtual QJsonObject zReport() = 0;
    virtual QJsonObject xReport() = 0;
    virtual QJsonObject xReportDept() = 0;
    virtual MoneyCounters getMoneyCounters(hw::fr::CheckType type) = 0;
    virtual QMap<int, MoneyCounters> getCheckCounters(hw::fr::CheckType type) = 0;
    virtual QMap<int, MoneyCounters> getPositionCounters(hw::fr::CheckType type) const = 0;
    virtual int getLastShiftNumber() = 0;
    virtual int getDefaultPaymentType() = 0;
    virtual QString getSendLinesTemplate() const = 0;
    virtual void fpReportInDatesRange(const QString& password, long from, long to, bool full) = 0;
    virtual void fpReportInShiftsRange(const QString& password, long from, long to, bool full) = 0;
    virtual void fiscalization(const QString& oldPassword, const QString& newPassword,
        const QString& registrationNumber, const QString& inn) = 0;
    virtual bool setDateTime(const QDateTime& dateTime) = 0;
    virtual QDateTime getDateTime() = 0;
    /// Largest accepted difference between the clocks of host and register, in hours; -1 for no limit.
    virtual int getHoursDifferenceLimit() const = 0;
    virtual bool setCliche(const QList<QString>& lines) = 0;
    virtual bool setTail(const QList<QString>& lines) = 0;
    virtual void setDefaultBaudrate() = 0;
    virtual QString getFrModeString() const = 0;
    virtual void printLogo(const Logo& logo) = 0;
    virtual void ping() = 0;
    virtual KkmRegisters getKkmRegisterBeg() = 0;
    virtual KkmRegisters getKkmRegisterEnd() = 0;
    virtual QMap<EFrDriver::FontTypes, int> getBandWidthFonts() = 0;
    virtual QString getInn() = 0;
    virtual bool setGraphicCliche(const QString& file) = 0;
    virtual void clearGraphicCliche() = 0;
    virtual QString getFrDocNum() = 0;
    virtual QString getFrDocNumAfterClosing() = 0;
    virtual QString getFrDocCopy(long number) = 0;
    virtual int getFrDocOffset() = 0;
    virtual void cancelCheckOpen(const FiscalDocument& document) = 0;
    virtual void cancelCheckTotal(const FiscalDocument& document) = 0;
    virtual void cancelCheckPay(const FiscalDocument& document) = 0;
    virtual QJsonObject cancelCheckClose(const FiscalDocument& document) = 0;
    virtual void cashierLogin(const FrUser& user) = 0;
    virtual void cashierLogout(const FrUser& user) = 0;
    virtual bool useSKNO() = 0;
    virtual bool isSKNOConnectedToServer() = 0;
    virtual bool checkOption(hw::fr::Option option) const = 0;
    virtual void setOption(hw::fr::Option option, bool value) = 0;
    virtual void d2dReport(const QDateTime& from, const QDateTime& to, bool full) = 0;
    virtual void z2zReport(unsigned int from, unsigned int to, bool full) = 0;
    virtual void openShift() = 0;
    virtual bool isShiftOpen() = 0;
    virtual bool useFN() = 0;
    virtual void printEj() = 0;
    virtual QList<QString> getEj(int shift) = 0;
    virtual void accountingReport() = 0;
    virtual void setRequisite(const FdRequisite& requisite) = 0;
    virtual OfdStatusInfo getOfdStatusInfo() = 0;
    virtual FnInfo getFnInfo() = 0;
    virtual FiscalInfo getFiscalInfo(int documentNumber, bool lastOnly) = 0;
    virtual QString getFfdVersion() = 0;
    virtual int getMainPaymentType(int type) = 0;
    virtual void setCheckTemplate(int number, const QString& text) = 0;
    virtual int getCheckCountersTries() const = 0;
    virtual int getDefaultTaxSystem() const = 0;
    virtual QList<hw::fr::common::TaxSystemType> getAllTaxSystems() const = 0;
    virtual void setNumber(int number) = 0;
    virtual int getNumber() const = 0;
    virtual QMap<int, MoneyCounters> getRelatedCounters() const = 0;
    virtual void continuePrintClosedDoc() = 0;
    virtual void registration(const QList<hw::fr::common::TaxSystemType>& taxSystems,
        hw::fr::common::TaxSystemType defaultTaxSystem, const QString& registrationNumber,
        const QList<RegistrationReason>& reasons, const QMap<QString, QVariant>& parameters) = 0;
    virtual void maintenance() = 0;
    virtual QJsonObject loadImage(int number, const QString& file) = 0;
    virtual int checkMarkingCode(const MarkedPosition& position, bool wait) = 0;
    virtual bool isRegistrationParametersChanged(const QMap<QString, QVariant>& parameters) const = 0;
    virtual void checkPaper() const = 0;
    virtual void clearMarkingCodes() = 0;
    virtual int getAnnulationCounter() = 0;
    virtual void setSymbolsMapping(const QMap<QChar, QChar>& mapping) = 0;
    virtual void setProgramCliche(const QList<QString>& lines) = 0;
    virtual bool isCashDrawerOpened() const = 0;
    virtual bool setParams(const QList<FrParameter>& params) = 0;
    virtual bool isLastCheckWithNumber(const QString& number) = 0;
    virtual QJsonObject getLastCheck(const FiscalDocument& document) = 0;
    virtual void printCodePageSymbols(int codePage) = 0;
    virtual void addPostLines(const QList<FrPrintData>& lines) = 0;
    virtual void clearLinesForPrint() = 0;
    virtual void setErrorNotificationHandler(const ErrorHandler& handler) = 0;
    virtual void setOfdNotificationHandler(const OfdHandler& handler) = 0;
    virtual QVariant queryData(const QString& query) const = 0;
    virtual void printLastZReport() = 0;
};
