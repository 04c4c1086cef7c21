#pragma once

#include "frbase/basicfrsettings.h"
#include "host/abstractfrdriver.h"
#include "host/records/deviceinfo.h"
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
#include <QString>
#include <QVariant>
#include <QtGlobal>

#include <functional>
#include <iosfwd>
#include <vector>

class AbstractSerialDriver;

namespace Log4Qt {
class Logger;
}

/// Base of every fiscal-register driver: the host's whole driver interface with harmless defaults, so that a
/// driver overrides only what its device can do.
///
/// A default does nothing, returns a neutral value, or logs that the device does not support the operation.
/// No default throws, except connect(), connectAtCurrentSpeed() and isPortReady(), which report a missing
/// link. The base itself implements connecting (connect() and what it calls), QR codes (generateQR(),
/// convertBytes2Bits()) and the options.
///
/// ## Order of calls
///
/// 1. The device object creates the driver with borrowed settings, and the host opens its port: portOpen().
/// 2. connect(), and again whenever the link has to be re-established. Then init().
/// 3. A receipt: checkOpen(), setRequisite() and checkAddPosition() as often as needed, checkTotal(),
///    checkPay() for each payment, checkClose(), checkWaitForPrint(); or checkCancel() instead of closing.
///    After closing, getFiscalInfo() returns the fiscal result. For a money document or a text document, its
///    Open, Print and Close operations.
/// 4. portClose(); the device object deletes the driver.
///
/// Descriptions, settings, options, counters and handlers may be read and set at any time.
///
/// ## Threads
///
/// A driver belongs to one thread: no operation may run while another one does. The base starts no threads
/// and takes no locks.
///
/// ## What blocks
///
/// In the base: connect(), enumerateSpeed() and connectAtCurrentSpeed() as long as their handshakes take,
/// without pauses or time-outs of their own, and msleep() for the given time. Nothing else. An override that
/// talks to a device blocks until the device has answered or the override's own time-out has expired.
///
/// ## What holds on entry and on exit
///
/// The port, the settings and the logger are borrowed and outlive the driver. settings and logger are never
/// null; port is null for a driver without a line. When connect() has returned, the device has answered, on a
/// serial line at currentBaudRate; its failures are described there. Failures that concern the host are
/// thrown as exceptions derived from BasicException, with a Russian text. The base never calls the
/// notification handlers.
///
/// ## A driver for a serial register
///
/// - portOpen() opens the line and then clears portClosed; portClose() closes it and sets portClosed again.
///   The base never writes portClosed.
/// - setConnection() is the handshake: it returns when the device has answered, throws
///   FrNoConnectionException when it has not, and ComDriverException when the port has failed.
/// - The constructor fills baudRates with the speeds that the device supports, in the order in which to try
///   them, and sets deviceInfo. setDefaultBaudrate() may choose defaultBaudRate according to the model.
/// - Each operation that uses the line calls isPortReady() first.
/// - The driver overrides the operations that the device supports. checkOpen() resets lastFiscalInfo, and
///   checkClose() fills it.
///
/// connect() and the search for the speed need no override. examples/serialdriver/ is such a driver.
class BasicFrDriver : public AbstractFrDriver
{
public:
    using ErrorHandler = std::function<void(const tr::Tr&, const QString&)>;
    using OfdHandler = std::function<void(bool, const tr::Tr&, const QDateTime&)>;

    /// Creates a driver without a port, with default settings of its own and the logger "frdriver".
    BasicFrDriver();
    /// Port and settings are borrowed and must outlive the driver. A null port makes a driver without a line;
    /// in place of null settings the driver creates default ones, which are never freed. The logger is
    /// "frdriver.<loggerName>", and getDeviceInfo() holds loggerName.
    ///
    /// Switches on the options 0x4, 0x80000 and 0x1000000 by setOption() of the base, unless the
    /// settings turn them off.
    BasicFrDriver(AbstractSerialDriver* serialPort, const QString& loggerName, BasicFrSettings* frSettings);
    ~BasicFrDriver() override;
    Q_DISABLE_COPY_MOVE(BasicFrDriver)

    // === Connection and lifetime ===
    // Apart from connect(), these do nothing by default; reinitialize() and reboot() log a warning,
    // setDefaults() returns false: not applied.

    void portOpen() override;
    void portClose() override;
    /// Establishes the link to the device; needs the port.
    ///
    /// A serial line is tried at defaultBaudRate. If the device does not answer, enumerateSpeed() searches
    /// the other speeds. Once a connection has succeeded, it does so only if the settings allow it
    /// (BasicFrSettings::isSpeedEnumerate()); otherwise connectAtCurrentSpeed() is called instead. A line
    /// without a speed (port kinds 3 and 4) is tried three times. The port is asked for its kind exactly
    /// twice.
    ///
    /// Throws FrNoConnectionException: "Нет связи" without a port, or when the port has failed at the first
    /// speed or at currentBaudRate; "Нет связи с ФР" when the device has not answered at any speed tried (the
    /// port is then back at defaultBaudRate, unless it refuses that), or when a line without a speed has
    /// failed. Any other exception of the handshake or the port passes through. A failure changes neither
    /// currentBaudRate nor connectedOnce.
    void connect() override;
    void init() override;
    void reinitialize() override;
    void reboot(EFrDriver::RebootMode mode) override;
    bool setDefaults() override;

    // === Descriptions and fiscal storage ===
    // Texts and records are empty by default. getDump() returns the stream untouched, getDeviceInfo() a copy
    // of deviceInfo, getDeviceSettings() the settings in force (borrowed).

    QString getDeviceStateDescription() override;
    QString getFnStateDescription() override;
    void printLastFnDocument() override;
    void printFnDocument(long number) override;
    FnDocument getFnDocument(unsigned long long number) override;
    QString getCountersDescription() override;
    QString getParametersDescription() override;
    std::ostream& getDump(int from, int to, std::ostream& out) override;
    DeviceInfo getDeviceInfo() override;
    [[nodiscard]] BasicFrSettings* getDeviceSettings() const override;

    // === Fonts, sound and drawer ===
    // By default setFont() and setLineSpacing() log a debug line, except for setLineSpacing(-1), which leaves
    // the spacing as it is; beep() logs an info line; loadFont() returns false: not applied.

    void setFont(const QList<EFrDriver::FontTypes>& fonts) override;
    void setLineSpacing(int spacing) override;
    void resetFont() override;
    bool loadFont(const Font& font) override;
    void beep() override;
    void drawerOpen() override;

    // === Receipts, money documents, text documents ===
    // By default checkAddPosition(), checkPay() and textDocOpen() log an info line, and barcodePrint() logs a
    // warning; the rest do nothing and return an empty object.

    void checkOpen(const FiscalDocument& document) override;
    QJsonObject checkClose(const FiscalDocument& document) override;
    void checkCancel() override;
    void checkWaitForPrint() override;
    void cutAfterChecksClosing() override;
    void cutPaper() override;
    void checkAddPosition(const FrPosition& position) override;
    void checkStornoPosition(const FrPosition& position) override;
    void checkTotal() override;
    void checkPay(const FrPayment& payment) override;
    void checkPrint(const QList<QString>& lines) override;
    void moneyCheckOpen(hw::fr::CheckType type, const QString& number) override;
    void moneyCheckPrint(const QList<QString>& lines) override;
    QJsonObject moneyCheckClose(double sum) override;
    void moneyCheckWaitForPrint() override;
    void textDocOpen(hw::fr::CheckType type) override;
    void textDocPrint(const QList<QString>& lines) override;
    void textDocClose() override;
    void barcodePrint(const Barcode& barcode) override;

    // === Reports and counters ===
    // By default these do nothing and return empty objects, maps and texts, and zeros;
    // getDefaultPaymentType() returns 1.

    void vatReport() override;
    QJsonObject zReport() override;
    QJsonObject xReport() override;
    QJsonObject xReportDept() override;
    MoneyCounters getMoneyCounters(hw::fr::CheckType type) override;
    QMap<int, MoneyCounters> getCheckCounters(hw::fr::CheckType type) override;
    [[nodiscard]] QMap<int, MoneyCounters> getPositionCounters(hw::fr::CheckType type) const override;
    int getLastShiftNumber() override;
    int getDefaultPaymentType() override;
    [[nodiscard]] QString getSendLinesTemplate() const override;
    void fpReportInDatesRange(const QString& password, long from, long to, bool full) override;
    void fpReportInShiftsRange(const QString& password, long from, long to, bool full) override;

    // === Fiscalisation, clock, cliché and line ===
    // By default getDateTime() returns the local time of the host, getHoursDifferenceLimit() -1: no limit.
    // setDateTime(), setCliche() and setTail() return false: not applied; the last two also log an info line.

    void fiscalization(const QString& oldPassword, const QString& newPassword,
        const QString& registrationNumber, const QString& inn) override;
    bool setDateTime(const QDateTime& dateTime) override;
    QDateTime getDateTime() override;
    [[nodiscard]] int getHoursDifferenceLimit() const override;
    bool setCliche(const QList<QString>& lines) override;
    bool setTail(const QList<QString>& lines) override;
    /// Does nothing by default; a driver may set defaultBaudRate here.
    void setDefaultBaudrate() override;
    [[nodiscard]] QString getFrModeString() const override;
    void printLogo(const Logo& logo) override;
    void ping() override;

    // === Registers and document numbers ===
    // Records, texts and maps are empty by default; getFrDocOffset() returns -1. setGraphicCliche() returns
    // false and logs an info line.

    KkmRegisters getKkmRegisterBeg() override;
    KkmRegisters getKkmRegisterEnd() override;
    QMap<EFrDriver::FontTypes, int> getBandWidthFonts() override;
    QString getInn() override;
    bool setGraphicCliche(const QString& file) override;
    void clearGraphicCliche() override;
    QString getFrDocNum() override;
    QString getFrDocNumAfterClosing() override;
    QString getFrDocCopy(long number) override;
    int getFrDocOffset() override;

    // === Annulment, users, national services ===
    // By default these do nothing and return an empty object or false.

    void cancelCheckOpen(const FiscalDocument& document) override;
    void cancelCheckTotal(const FiscalDocument& document) override;
    void cancelCheckPay(const FiscalDocument& document) override;
    QJsonObject cancelCheckClose(const FiscalDocument& document) override;
    void cashierLogin(const FrUser& user) override;
    void cashierLogout(const FrUser& user) override;
    bool useSKNO() override;
    bool isSKNOConnectedToServer() override;

    // === Options ===

    /// Whether every bit of the option is on; true for an option without bits.
    [[nodiscard]] bool checkOption(hw::fr::Option option) const override;
    /// Switches the option's bits. An entry for this very option in the settings takes precedence over
    /// `value`.
    void setOption(hw::fr::Option option, bool value) override;

    // === Shifts, electronic journal, requisites, fiscal information ===
    // By default a shift is always open. setRequisite() logs an info line. getFiscalInfo() returns
    // lastFiscalInfo whatever the arguments are; the other records are empty. getMainPaymentType() returns
    // its argument, getCheckCountersTries() 1, getDefaultTaxSystem() 0.

    void d2dReport(const QDateTime& from, const QDateTime& to, bool full) override;
    void z2zReport(unsigned int from, unsigned int to, bool full) override;
    void openShift() override;
    bool isShiftOpen() override;
    /// Returns checkOption(0x10): the register has a fiscal storage.
    bool useFN() override;
    void printEj() override;
    QList<QString> getEj(int shift) override;
    void accountingReport() override;
    void setRequisite(const FdRequisite& requisite) override;
    OfdStatusInfo getOfdStatusInfo() override;
    FnInfo getFnInfo() override;
    FiscalInfo getFiscalInfo(int documentNumber, bool lastOnly) override;
    QString getFfdVersion() override;
    int getMainPaymentType(int type) override;
    void setCheckTemplate(int templateNumber, const QString& text) override;
    [[nodiscard]] int getCheckCountersTries() const override;
    [[nodiscard]] int getDefaultTaxSystem() const override;
    [[nodiscard]] QList<hw::fr::common::TaxSystemType> getAllTaxSystems() const override;

    // === Number, registration, marking codes ===
    // setNumber() writes one field and getNumber() reads it. By default checkMarkingCode() returns 0: no
    // result. addPostLines() logs a warning; the rest do nothing and return a neutral value.

    void setNumber(int newNumber) override;
    [[nodiscard]] int getNumber() const override;
    [[nodiscard]] QMap<int, MoneyCounters> getRelatedCounters() const override;
    void continuePrintClosedDoc() override;
    void registration(const QList<hw::fr::common::TaxSystemType>& taxSystems,
        hw::fr::common::TaxSystemType defaultTaxSystem, const QString& registrationNumber,
        const QList<RegistrationReason>& reasons, const QMap<QString, QVariant>& parameters) override;
    void maintenance() override;
    QJsonObject loadImage(int imageNumber, const QString& file) override;
    int checkMarkingCode(const MarkedPosition& position, bool wait) override;
    [[nodiscard]] bool isRegistrationParametersChanged(
        const QMap<QString, QVariant>& parameters) const override;
    void checkPaper() const override;
    void clearMarkingCodes() override;
    int getAnnulationCounter() override;
    void setSymbolsMapping(const QMap<QChar, QChar>& mapping) override;
    void setProgramCliche(const QList<QString>& lines) override;
    [[nodiscard]] bool isCashDrawerOpened() const override;
    /// Passes each parameter to legacySetParam() in list order, its numbers narrowed to 16 bits, and stops at
    /// the first that is refused. Returns whether none was refused; true for an empty list.
    bool setParams(const QList<FrParameter>& params) override;
    bool isLastCheckWithNumber(const QString& checkNumber) override;
    QJsonObject getLastCheck(const FiscalDocument& document) override;
    void printCodePageSymbols(int codePage) override;
    void addPostLines(const QList<FrPrintData>& lines) override;
    void clearLinesForPrint() override;

    // === Notifications and queries ===
    // A handler is copied; the one that it replaces is destroyed once the new one is in place. The base calls
    // neither handler, a driver may. queryData() returns an invalid value by default.

    void setErrorNotificationHandler(const ErrorHandler& handler) override;
    void setOfdNotificationHandler(const OfdHandler& handler) override;
    [[nodiscard]] QVariant queryData(const QString& query) const override;
    void printLastZReport() override;

    // === For drivers on this base: handshake and speeds ===
    // From here on the order is part of the binary contract, too.

    /// The handshake: see "A driver for a serial register". Does nothing by default.
    virtual void setConnection();
    /// Tries the speeds of baudRates, except defaultBaudRate, in list order until setConnection() succeeds,
    /// and makes that speed currentBaudRate. Returns whether one has succeeded; if not, the port stays at the
    /// last speed tried. After FrNoConnectionException and ComDriverException it tries the next speed; any
    /// other exception passes through. Needs the port.
    [[nodiscard]] virtual bool enumerateSpeed();
    /// Tries currentBaudRate. Returns false when the device does not answer; throws FrNoConnectionException
    /// ("Нет связи") when the port fails. Any other exception passes through. Needs the port.
    [[nodiscard]] virtual bool connectAtCurrentSpeed();
    /// Throws FrNoConnectionException when there is no port or it has not been opened.
    virtual void isPortReady() const;

    // === For drivers on this base: QR codes ===

    /// Packs rows of modules, of which only bit 0 counts, into rows of bytes, eight modules to a byte, the
    /// first in bit 7, or in bit 0 with `reverse`. The last byte of a row is padded with zeros.
    [[nodiscard]] virtual std::vector<std::vector<unsigned char>> convertBytes2Bits(
        const std::vector<std::vector<unsigned char>>& rows, bool reverse) const;
    /// The text as a QR code of error correction level H: rows from the top, 0xFF for a dark module and 0x00
    /// for a light one, without a quiet zone. The text ends before its first U+0000. Empty for an empty text;
    /// empty, with an error in the log, for a text that does not fit (more than 1273 bytes of UTF-8) or
    /// begins with U+0000.
    [[nodiscard]] virtual std::vector<std::vector<unsigned char>> generateQR(const QString& text) const;

    // === For drivers on this base: pauses and parameters ===

    /// Blocks for `ms` milliseconds, or until a signal arrives; returns at once if `ms` is less than 1.
    virtual void msleep(int ms) const;
    /// Writes one cell of the device's parameter tables; returns whether it was applied. The base returns
    /// false.
    virtual bool legacySetParam(
        unsigned short table, unsigned short row, unsigned short field, const QString& value);

protected:
    /// Borrowed; null for a driver without a line.
    AbstractSerialDriver* port;
    /// Borrowed, or the default settings that the constructor has created; never null.
    BasicFrSettings* settings;
    /// Belongs to the logging library; never null.
    const Log4Qt::Logger* logger;
    /// Whether the port is closed. Written only by portOpen() and portClose() of a driver.
    bool portClosed = true;
    /// Speed that connect() tries first, in baud.
    int defaultBaudRate = 19200;
    /// Speed of the last successful connection, in baud.
    int currentBaudRate = 19200;
    /// Speeds to try, in this order, when the device does not answer at defaultBaudRate; in baud.
    QList<int> baudRates;
    DeviceInfo deviceInfo;
    /// The bits of hw::fr::Option in force.
    quint64 options = 0;
    /// Not used by the base; a driver may give it a meaning.
    bool driverFlag = false;
    /// Whether a serial line has ever been connected.
    bool connectedOnce = false;
    /// What setNumber() has written.
    int number = 0;
    /// Result of the last fiscal document.
    FiscalInfo lastFiscalInfo;
    /// May be empty: check before a call.
    OfdHandler ofdNotificationHandler;
    /// May be empty: check before a call.
    ErrorHandler errorNotificationHandler;

private:
    void setInitialOptions();
    void connectWithSpeed();
    void connectWithoutSpeed();
    [[nodiscard]] bool answersAt(int baudRate);
    [[nodiscard]] bool answersAtAnotherSpeed();
    void resetSpeed();
};
