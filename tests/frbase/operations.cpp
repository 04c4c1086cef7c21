#include "tests/frbase/operations.h"

#include "host/records/fdrequisite.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frparameter.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"
#include "tests/frbase/operationwords.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <sstream>

// The first two columns of an operation: its name, and a function that makes the call.
#define CALL(expression)                                                                                     \
    nameIn(#expression),                                                                                     \
        [](BasicFrDriver& driver) { return words::ofResult([&] { return driver.expression; }); }

using namespace Qt::StringLiterals;

namespace {

const FiscalDocument document(0, u"1"_s);
const FrPayment payment(2, 10.5);
const FdRequisite requisite(EFrDriver::BuyerContact, u"a@b.example"_s);
const QString text = u"1"_s;
const QList<QString> lines{u"1"_s};
const QDateTime moment(QDate(2024, 3, 5), QTime(14, 7, 9));
constexpr auto sale = hw::fr::CheckType::Sale;
constexpr auto general = hw::fr::common::TaxSystemType::General;

const QString nothing = u"nothing"_s;
const QString no = u"false"_s;
const QString emptyText = u"empty text"_s;
const QString emptyObject = u"empty object"_s;
const QString emptyMap = u"empty map"_s;
const QString emptyList = u"empty list"_s;
const QString emptyRecord = u"empty record"_s;

QString nameIn(const char* call)
{
    return QString::fromLatin1(call).section(u'(', 0, 0);
}

FrPosition position()
{
    FrPosition tea;
    tea.setName(u"Чай"_s);
    tea.setPriceWithDisc(10);
    tea.setCount(2);
    tea.setPossum(20);
    return tea;
}

QString dump(BasicFrDriver& driver)
{
    std::ostringstream out;
    const bool same = &driver.getDump(0, 1, out) == &out;
    return same && out.str().empty() ? u"the stream, untouched"_s : u"another stream or text in it"_s;
}

QString hostClock(BasicFrDriver& driver)
{
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime answer = driver.getDateTime();
    const bool between = before <= answer && answer <= QDateTime::currentDateTime();
    return between && answer.timeSpec() == Qt::LocalTime ? u"the host's clock"_s : answer.toString();
}

} // namespace

const QList<OperationTopic>& operationTopics()
{
    static const QList<OperationTopic> topics{
        {u"Connection and lifetime"_s,
            {
                {CALL(portOpen()), nothing},
                {CALL(portClose()), nothing},
                {CALL(connect()), nothing,
                    {u"info: Установка связи с устройством"_s, u"info: Скорость по умолчанию: 19200"_s},
                    u"connects, with a search for the speed on a serial line"_s, u"obtains a service token"_s,
                    true},
                {CALL(init()), nothing},
                {CALL(reinitialize()), nothing,
                    {u"warn: Реинициализация(технологическое обнуление) не поддерживается устройством"_s}},
                {CALL(reboot(EFrDriver::RebootMode::Soft)), nothing,
                    {u"warn: Перезагрузка не поддерживается устройством"_s}},
                {CALL(setDefaults()), no},
                {CALL(ping()), nothing},
                {CALL(setDefaultBaudrate()), nothing},
                {CALL(setConnection()), nothing},
                {CALL(enumerateSpeed()), no, {u"debug: Перебор скорости подключения к ФР"_s},
                    u"tries the other speeds; `false` when none answers"_s},
                {CALL(connectAtCurrentSpeed()), u"true"_s,
                    {u"info:  установка соединения на скорости: 19200"_s},
                    u"tries the speed of the last connection; `false` when it does not answer"_s, {}, true},
                {CALL(isPortReady()), u"throws FrNoConnectionException: Необходимо открыть порт"_s, {},
                    u"throws while there is no open port"_s, {}, true},
                {CALL(msleep(1)), nothing, {}, u"sleeps so many milliseconds"_s},
            }},
        {u"Descriptions and information"_s,
            {
                {CALL(getDeviceStateDescription()), emptyText},
                {CALL(getFnStateDescription()), emptyText},
                {CALL(getCountersDescription()), emptyText},
                {CALL(getParametersDescription()), emptyText},
                {u"getDump"_s, dump, u"the stream, untouched"_s},
                {CALL(getDeviceInfo()), u"empty model and producer"_s, {}, {},
                    u"default; filled with model 1, \"Атол Онлайн\", and producer 4"_s},
                {CALL(getDeviceSettings()), u"the settings in force"_s},
                {CALL(getSendLinesTemplate()), emptyText},
                {CALL(getFrModeString()), emptyText},
                {CALL(getInn()), emptyText},
                {CALL(getFfdVersion()), emptyText},
                {CALL(queryData(text)), u"empty value"_s},
                {CALL(getFnInfo()), emptyRecord},
                {CALL(getFiscalInfo(5, true)), emptyRecord, {}, {}, u"default; filled by checkClose"_s},
                {CALL(getOfdStatusInfo()), emptyRecord},
                {CALL(getKkmRegisterBeg()), emptyRecord},
                {CALL(getKkmRegisterEnd()), emptyRecord},
                {CALL(getFnDocument(1)), emptyRecord},
                {CALL(checkOption(hw::fr::Option::Bit2)), u"true"_s, {},
                    u"whether the option is on; bits 2, 19 and 24 are to begin with"_s,
                    u"default; bits 19 and 24 are off, UseFn and bits 25 and 37 are on"_s},
                {CALL(setOption(hw::fr::Option::Bit2, true)), nothing, {},
                    u"switches the option, unless the settings hold it"_s},
                {CALL(useFN()), no, {}, u"whether the option UseFn is on; it is not to begin with"_s,
                    u"default; the option is on"_s},
                {CALL(setParams({FrParameter(1, 2, 3, text)})), no, {},
                    u"hands each to legacySetParam until one is refused; `false` when one was"_s},
                {CALL(legacySetParam(1, 2, 3, text)), no},
                {CALL(getHoursDifferenceLimit()), u"-1"_s},
                {CALL(getNumber()), u"0"_s, {}, u"the number that was set, 0 to begin with"_s},
                {CALL(setNumber(0)), nothing, {}, u"keeps the number"_s},
                {CALL(setErrorNotificationHandler({})), nothing, {}, u"keeps the handler"_s},
                {CALL(setOfdNotificationHandler({})), nothing, {}, u"keeps the handler"_s},
            }},
        {u"Printing, fonts, cliché and logo"_s,
            {
                {CALL(setFont({EFrDriver::FontTypes::Normal})), nothing,
                    {u"debug: Установка шрифта не поддерживается устройством"_s}},
                {CALL(setLineSpacing(0)), nothing,
                    {u"debug: Установка межстрочного интервала не поддерживается устройством"_s},
                    u"nothing; no log line for -1"_s},
                {CALL(resetFont()), nothing},
                {CALL(loadFont(Font())), no},
                {CALL(getBandWidthFonts()), emptyMap},
                {CALL(beep()), nothing, {u"info: Подача звукового сигнала не поддерживается устройством"_s}},
                {CALL(drawerOpen()), nothing},
                {CALL(isCashDrawerOpened()), no},
                {CALL(cutAfterChecksClosing()), nothing},
                {CALL(cutPaper()), nothing},
                {CALL(barcodePrint(Barcode())), nothing,
                    {u"warn: Печать штрих-кода не поддерживается устройством"_s}},
                {CALL(printLogo(Logo())), nothing},
                {CALL(setCliche(lines)), no,
                    {u"info: Программирование клише не поддерживается устройством"_s}},
                {CALL(setTail(lines)), no,
                    {u"info: Программирование рекламного текста не поддерживается устройством"_s}},
                {CALL(setGraphicCliche(text)), no,
                    {u"info: Установка графического клише не поддерживается устройством"_s}},
                {CALL(clearGraphicCliche()), nothing},
                {CALL(setProgramCliche(lines)), nothing},
                {CALL(setCheckTemplate(1, text)), nothing},
                {CALL(loadImage(1, text)), emptyObject},
                {CALL(printCodePageSymbols(866)), nothing},
                {CALL(setSymbolsMapping({{u'ё', u'е'}})), nothing},
                {CALL(addPostLines({FrPrintData()})), nothing,
                    {u"warn: Печать дополнительных элементов при закрытии чека не поддерживается"_s}},
                {CALL(clearLinesForPrint()), nothing},
                {CALL(checkPaper()), nothing},
                {CALL(generateQR(text)), u"21 rows"_s,
                    {u"info: Генерируем qr-code"_s, u"info: qr-code сгенерирован"_s},
                    u"the text as a matrix of modules"_s},
                {CALL(convertBytes2Bits({{1}, {0}}, false)), u"2 rows"_s, {}, u"modules packed into bits"_s},
            }},
        {u"Receipts"_s,
            {
                {CALL(checkOpen(document)), nothing, {}, {},
                    u"starts a sale receipt; any other type is refused"_s},
                {CALL(checkAddPosition(position())), nothing,
                    {u"info: Добавление позиции в чек: Чай, цена 10.00, количество 2.000, сумма 20.00, "
                     u"скидка 0.00, налог 5"_s},
                    {}, u"logs and appends a line"_s},
                {CALL(checkStornoPosition(position())), nothing},
                {CALL(checkTotal()), nothing},
                {CALL(checkPay(payment)), nothing, {u"info: Расчет по чеку: (2) 10.50"_s}, {},
                    u"logs and adds to the payment type's sum"_s},
                {CALL(checkPrint(lines)), nothing},
                {CALL(checkClose(document)), emptyObject, {}, {},
                    u"sends the receipt and waits for its fiscal result"_s},
                {CALL(checkCancel()), nothing},
                {CALL(checkWaitForPrint()), nothing},
                {CALL(cancelCheckOpen(document)), nothing},
                {CALL(cancelCheckTotal(document)), nothing},
                {CALL(cancelCheckPay(document)), nothing},
                {CALL(cancelCheckClose(document)), emptyObject},
                {CALL(moneyCheckOpen(sale, text)), nothing},
                {CALL(moneyCheckPrint(lines)), nothing},
                {CALL(moneyCheckWaitForPrint()), nothing},
                {CALL(moneyCheckClose(10.5)), emptyObject},
                {CALL(textDocOpen(sale)), nothing, {u"info: Открытие текстового документа"_s}},
                {CALL(textDocPrint(lines)), nothing},
                {CALL(textDocClose()), nothing},
                {CALL(continuePrintClosedDoc()), nothing},
                {CALL(isLastCheckWithNumber(text)), no},
                {CALL(getLastCheck(document)), emptyObject},
                {CALL(setRequisite(requisite)), nothing,
                    {u"info: Запись реквизита 1008 (телефон или электронный адрес покупателя) в ФР"_s}, {},
                    u"the same, and keeps 1008 and 1055 for the receipt"_s},
                {CALL(checkMarkingCode(MarkedPosition(), true)), u"0"_s},
                {CALL(clearMarkingCodes()), nothing},
            }},
        {u"Reports, shifts and counters"_s,
            {
                {CALL(vatReport()), nothing},
                {CALL(zReport()), emptyObject},
                {CALL(xReport()), emptyObject},
                {CALL(xReportDept()), emptyObject},
                {CALL(fpReportInDatesRange(text, 1, 2, true)), nothing},
                {CALL(fpReportInShiftsRange(text, 1, 2, true)), nothing},
                {CALL(d2dReport(moment, moment, true)), nothing},
                {CALL(z2zReport(1, 2, true)), nothing},
                {CALL(printLastZReport()), nothing},
                {CALL(accountingReport()), nothing},
                {CALL(printEj()), nothing},
                {CALL(getEj(1)), emptyList},
                {CALL(openShift()), nothing},
                {CALL(isShiftOpen()), u"true"_s},
                {CALL(getMoneyCounters(sale)), u"count 0, sum 0"_s},
                {CALL(getCheckCounters(sale)), emptyMap},
                {CALL(getPositionCounters(sale)), emptyMap},
                {CALL(getRelatedCounters()), emptyMap},
                {CALL(getCheckCountersTries()), u"1"_s},
                {CALL(getLastShiftNumber()), u"0"_s},
                {CALL(getAnnulationCounter()), u"0"_s},
                {CALL(getFrDocNum()), emptyText},
                {CALL(getFrDocNumAfterClosing()), emptyText},
                {CALL(getFrDocCopy(1)), emptyText},
                {CALL(getFrDocOffset()), u"-1"_s},
                {CALL(printLastFnDocument()), nothing},
                {CALL(printFnDocument(1)), nothing},
            }},
        {u"Clock, payments, taxation, registration and users"_s,
            {
                {CALL(setDateTime(moment)), no},
                {u"getDateTime"_s, hostClock, u"the host's clock"_s, {}, {}, u"the same"_s},
                {CALL(getDefaultPaymentType()), u"1"_s},
                {CALL(getMainPaymentType(3)), u"3"_s, {}, u"the type unchanged"_s},
                {CALL(getDefaultTaxSystem()), u"0"_s},
                {CALL(getAllTaxSystems()), emptyList},
                {CALL(fiscalization(text, text, text, text)), nothing},
                {CALL(registration({general}, general, text, {RegistrationReason::FnChange}, {})), nothing},
                {CALL(isRegistrationParametersChanged({{text, 1}})), no},
                {CALL(maintenance()), nothing},
                {CALL(cashierLogin(FrUser())), nothing},
                {CALL(cashierLogout(FrUser())), nothing},
                {CALL(useSKNO()), no},
                {CALL(isSKNOConnectedToServer()), no},
            }},
    };
    return topics;
}

QList<Operation> allOperations()
{
    QList<Operation> all;
    for (const OperationTopic& topic : operationTopics())
        all += topic.operations;
    return all;
}

QStringList expectedOf(const Operation& operation)
{
    return QStringList{operation.value} + operation.log;
}

QStringList outcomeOf(const Operation& operation, BasicFrDriver& driver)
{
    LogCapture log;
    QString value;
    const QString end = outcomeOf([&] { value = operation.call(driver); });
    return QStringList{end == u"returned"_s ? value : u"throws "_s + end} + log.take();
}
