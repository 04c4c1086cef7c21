#pragma once

#include "frbase/basicfrsettings.h"
#include "host/abstractfrdriver.h"
#include "host/records/deviceinfo.h"

#include <vector>

class AbstractSerialDriver;

namespace Log4Qt {
class Logger;
}

/// Base of every fiscal-register driver: the host's whole driver interface with harmless defaults, so that a
/// driver overrides only what its device can do.
///
/// A default does nothing, returns a neutral value, or says in the log that the device does not support the
/// operation. No default throws. The work of the base itself is connecting (connect() and what it calls), QR
/// codes (generateQR(), convertBytes2Bits()) and the options.
///
/// ## Order of calls
///
/// 1. The device object constructs the driver with borrowed settings and the host opens its port: portOpen().
/// 2. connect(); again whenever the link is to be established anew. Then init().
/// 3. A receipt: checkOpen(), setRequisite() and checkAddPosition() as often as needed, checkTotal(),
///    checkPay() for each payment, checkClose(), checkWaitForPrint(); or checkCancel() instead of closing.
///    After closing, getFiscalInfo() tells the fiscal result. A money document or a text document is its
///    Open, Print and Close.
/// 4. portClose(); the device object deletes the driver.
///
/// Descriptions, settings, options, counters and handlers may be asked for and set in any order.
///
/// ## Threads
///
/// A driver belongs to one thread: no operation may run while another one does. The base starts no threads
/// and takes no locks.
///
/// ## What blocks
///
/// Of the base: connect(), enumerateSpeed() and connectAtCurrentSpeed() for as long as the handshakes take
/// that they run, with no pause and no time-out of their own; msleep() for the time given. Nothing else. An
/// override that talks to a device blocks until the device has answered or its own time-out has passed.
///
/// ## What holds on entry and on exit
///
/// The port, the settings and the logger are borrowed and outlive the driver. settings and logger are never
/// null; port is null for a driver without a line. When connect() returns, the device answers, and on a
/// serial line at currentBaudRate; when it throws, see there. A failure that the host must see is thrown as
/// a class of the BasicException family with a Russian text; a callback that has been set is never called by
/// the base.
///
/// ## A driver for a serial register
///
/// - portOpen() opens the line and then clears portClosed; portClose() closes it and sets portClosed again.
///   The base never writes portClosed.
/// - setConnection() is the handshake: it returns when the device has answered, throws
///   FrNoConnectionException when it has not, and ComDriverException when the port has failed.
/// - The constructor fills baudRates with the speeds that the device knows, in the order in which they are to
///   be tried, and sets deviceInfo. setDefaultBaudrate() may choose defaultBaudRate by the model.
/// - Each operation that uses the line calls isPortReady() first.
/// - Then the operations that the device can do. lastFiscalInfo is filled by checkClose() and reset by
///   checkOpen().
///
/// connect() and the search for the speed are used as they are. examples/serialdriver/ is such a driver.
class BasicFrDriver : public AbstractFrDriver
{
public:
    /// A driver without a port, with default settings of its own and the logger "frdriver".
    BasicFrDriver();
    /// Port and settings are borrowed and must outlive the driver; a null port is a driver without a line,
    /// null settings stand for default ones of the driver's own (which are never freed). The logger is
    /// "frdriver.<loggerName>", and loggerName stands in getDeviceInfo().
    ///
    /// Options Bit2, Bit19 and Bit24 are switched on through setOption() of the base, where the settings can
    /// turn each of them off.
    BasicFrDriver(AbstractSerialDriver* port, const QString& loggerName, BasicFrSettings* settings);
    ~BasicFrDriver() override;
    Q_DISABLE_COPY_MOVE(BasicFrDriver)

    // === Connection and lifetime ===
    // By default nothing happens, with a warning for reinitialize() and reboot(); setDefaults() returns
    // false: not applied.

    void portOpen() override;
    void portClose() override;
    /// Establishes the link to the device; needs the port.
    ///
    /// A serial line is tried at defaultBaudRate and, when the device does not answer, at the other speeds by
    /// enumerateSpeed(). If the settings forbid the search (BasicFrSettings::isSpeedEnumerate()), that holds
    /// for reconnecting only: until the first success the search runs all the same, later
    /// connectAtCurrentSpeed() stands in for it. A line without a speed (port kinds 3 and 4) is tried three
    /// times. The port is asked for its kind exactly twice.
    ///
    /// Throws FrNoConnectionException, "Нет связи" when the port failed at the first speed or at
    /// currentBaudRate, "Нет связи с ФР" when the device answered at no speed tried (the port is then back at
    /// defaultBaudRate, unless it refuses that) or a line without a speed failed. Without a port it is
    /// "Нет связи". Any other exception of the handshake or the port passes through. A failure changes
    /// neither currentBaudRate nor connectedOnce.
    void connect() override;
    void init() override;
    void reinitialize() override;
    void reboot(EFrDriver::RebootMode mode) override;
    bool setDefaults() override;

    // === Descriptions and fiscal storage ===
    // Empty texts and records. getDump() returns the stream untouched, getDeviceInfo() a copy of deviceInfo,
    // getDeviceSettings() the settings in force (borrowed).

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
    // setFont() and setLineSpacing() write a debug line (setLineSpacing(-1) stands for "as it is" and writes
    // none), beep() an info line; loadFont() returns false: not applied.

    void setFont(const QList<EFrDriver::FontTypes>& fonts) override;
    void setLineSpacing(int spacing) override;
    void resetFont() override;
    bool loadFont(const Font& font) override;
    void beep() override;
    void drawerOpen() override;

    // === Receipts, money documents, text documents ===
    // checkAddPosition(), checkPay() and textDocOpen() write an info line, barcodePrint() a warning; the rest
    // does nothing and returns an empty object.

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
    // Nothing, empty objects, empty maps and zeros; getDefaultPaymentType() is 1.

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
    // getDateTime() is the host's own clock, getHoursDifferenceLimit() is -1: no limit. setDateTime() and the
    // cliché operations return false: not applied, the latter with an info line.

    void fiscalization(const QString& oldPassword, const QString& newPassword,
        const QString& registrationNumber, const QString& inn) override;
    bool setDateTime(const QDateTime& dateTime) override;
    QDateTime getDateTime() override;
    [[nodiscard]] int getHoursDifferenceLimit() const override;
    bool setCliche(const QList<QString>& lines) override;
    bool setTail(const QList<QString>& lines) override;
    /// Nothing; a driver may set defaultBaudRate here.
    void setDefaultBaudrate() override;
    [[nodiscard]] QString getFrModeString() const override;
    void printLogo(const Logo& logo) override;
    void ping() override;

    // === Registers and document numbers ===
    // Empty records, texts and maps; getFrDocOffset() is -1. setGraphicCliche() returns false with an info
    // line.

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
    // Nothing, an empty object, false.

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
    /// Switches the option's bits. An entry of the settings for this very option holds instead of value.
    void setOption(hw::fr::Option option, bool value) override;

    // === Shifts, electronic journal, requisites, fiscal information ===
    // A shift is always open. setRequisite() writes an info line. getFiscalInfo() returns lastFiscalInfo
    // whatever the arguments are; the other records are empty. getMainPaymentType() returns its argument,
    // getCheckCountersTries() 1, getDefaultTaxSystem() 0.

    void d2dReport(const QDateTime& from, const QDateTime& to, bool full) override;
    void z2zReport(unsigned int from, unsigned int to, bool full) override;
    void openShift() override;
    bool isShiftOpen() override;
    /// checkOption(UseFn).
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
    // setNumber() and getNumber() write and read one field. checkMarkingCode() is 0: no result.
    // addPostLines() writes a warning; the rest does nothing and returns a neutral value.

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
    /// Hands each parameter to legacySetParam() in list order, its numbers narrowed to 16 bits, and stops at
    /// the first that is refused. Returns whether none was; true for an empty list.
    bool setParams(const QList<FrParameter>& params) override;
    bool isLastCheckWithNumber(const QString& checkNumber) override;
    QJsonObject getLastCheck(const FiscalDocument& document) override;
    void printCodePageSymbols(int codePage) override;
    void addPostLines(const QList<FrPrintData>& lines) override;
    void clearLinesForPrint() override;

    // === Notifications and queries ===
    // A handler is kept as a copy; the one it replaces is destroyed after the new one is in place. The base
    // calls neither, a driver may. queryData() is an invalid value.

    void setErrorNotificationHandler(const ErrorHandler& handler) override;
    void setOfdNotificationHandler(const OfdHandler& handler) override;
    [[nodiscard]] QVariant queryData(const QString& query) const override;
    void printLastZReport() override;

    // === For drivers on this base: handshake and speeds ===
    // From here on the order is part of the binary contract, too.

    /// The handshake: see "A driver for a serial register". Nothing by default.
    virtual void setConnection();
    /// Tries the speeds of baudRates except defaultBaudRate, in list order, until setConnection() succeeds;
    /// that speed becomes currentBaudRate. Returns whether one did; if not, the port stays at the last speed
    /// tried. FrNoConnectionException and ComDriverException lead to the next speed, any other passes
    /// through. Needs the port.
    [[nodiscard]] virtual bool enumerateSpeed();
    /// Tries currentBaudRate. Returns false when the device does not answer; throws FrNoConnectionException
    /// ("Нет связи") when the port fails. Any other exception passes through. Needs the port.
    [[nodiscard]] virtual bool connectAtCurrentSpeed();
    /// Throws FrNoConnectionException when there is no port or it has not been opened.
    virtual void isPortReady() const;

    // === For drivers on this base: QR codes ===

    /// Packs rows of modules, of which only bit 0 counts, into rows of bytes, eight modules a byte, the first
    /// in bit 7, or in bit 0 with reverse. The last byte of a row is filled up with zeros.
    [[nodiscard]] virtual std::vector<std::vector<unsigned char>> convertBytes2Bits(
        const std::vector<std::vector<unsigned char>>& rows, bool reverse) const;
    /// The text as a QR code of error correction level H: rows from the top, 0xFF for a dark module and 0x00
    /// for a light one, no quiet zone. Empty, with an error in the log, when the text does not fit (more than
    /// 1273 bytes of UTF-8) or begins with U+0000; empty for an empty text. The code ends before a U+0000.
    [[nodiscard]] virtual std::vector<std::vector<unsigned char>> generateQR(const QString& text) const;

    // === For drivers on this base: pauses and parameters ===

    /// Blocks for so many milliseconds, or until a signal arrives; up to 4 294 967. Not at all for less
    /// than 1.
    virtual void msleep(int ms) const;
    /// Programs one cell of the device's parameter tables; returns whether it was applied. The base returns
    /// false.
    virtual bool legacySetParam(
        unsigned short table, unsigned short row, unsigned short field, const QString& value);

protected:
    /// Borrowed; null for a driver without a line.
    AbstractSerialDriver* port;
    /// Borrowed, or the constructor's own default settings; never null.
    BasicFrSettings* settings;
    /// Belongs to the logging library; never null.
    const Log4Qt::Logger* logger;
    /// Whether the port is still or again closed. Written by portOpen() and portClose() of a driver only.
    bool portClosed = true;
    /// Speed that connect() tries first, in baud.
    int defaultBaudRate = 19200;
    /// Speed of the last successful connection, in baud.
    int currentBaudRate = 19200;
    /// Speeds to try when the device does not answer at defaultBaudRate, in baud and in this order.
    QList<int> baudRates;
    DeviceInfo deviceInfo;
    /// The bits of hw::fr::Option in force.
    quint64 options = 0;
    /// Not used by the base; a driver may give it a meaning.
    bool driverFlag = false;
    /// Whether a serial line has been connected; never goes back to false.
    bool connectedOnce = false;
    int number = 0;
    /// Result of the last fiscal document.
    FiscalInfo lastFiscalInfo;
    /// May be empty: check before a call.
    OfdHandler ofdNotificationHandler;
    /// May be empty: check before a call.
    ErrorHandler errorNotificationHandler;

private:
    void connectWithSpeed();
    void connectWithoutSpeed();
    [[nodiscard]] bool answersAt(int baudRate);
    [[nodiscard]] bool answersAtAnotherSpeed();
    void resetSpeed();
};
