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

// A function that makes the call with a fresh driver and returns the result in words.
#define CALL(expression)                                                                                     \
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

QString clock(BasicFrDriver& driver)
{
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime answer = driver.getDateTime();
    const bool between = before <= answer && answer <= QDateTime::currentDateTime();
    return between && answer.timeSpec() == Qt::LocalTime ? u"the host's clock"_s : answer.toString();
}

QList<Operation> connection()
{
    const QString topic = u"Connection and lifetime"_s;
    return {
        {topic, u"portOpen"_s, CALL(portOpen()), nothing},
        {topic, u"portClose"_s, CALL(portClose()), nothing},
        {.topic = topic,
            .name = u"connect"_s,
            .call = CALL(connect()),
            .expectedValue = nothing,
            .expectedLog = {u"info: Установка связи с устройством"_s,
                u"info: Скорость по умолчанию: 19200"_s},
            .does = u"connects, with a search for the speed on a serial line"_s,
            .cloud = u"obtains a service token"_s,
            .needsPort = true},
        {topic, u"init"_s, CALL(init()), nothing},
        {topic, u"reinitialize"_s, CALL(reinitialize()), nothing,
            {u"warn: Реинициализация(технологическое обнуление) не поддерживается устройством"_s}},
        {topic, u"reboot"_s, CALL(reboot(EFrDriver::RebootMode::Soft)), nothing,
            {u"warn: Перезагрузка не поддерживается устройством"_s}},
        {topic, u"setDefaults"_s, CALL(setDefaults()), no},
        {topic, u"ping"_s, CALL(ping()), nothing},
        {topic, u"setDefaultBaudrate"_s, CALL(setDefaultBaudrate()), nothing},
        {topic, u"setConnection"_s, CALL(setConnection()), nothing},
        {.topic = topic,
            .name = u"enumerateSpeed"_s,
            .call = CALL(enumerateSpeed()),
            .expectedValue = no,
            .expectedLog = {u"debug: Перебор скорости подключения к ФР"_s},
            .does = u"tries the other speeds; `false` when none answers"_s},
        {.topic = topic,
            .name = u"connectAtCurrentSpeed"_s,
            .call = CALL(connectAtCurrentSpeed()),
            .expectedValue = u"true"_s,
            .expectedLog = {u"info:  установка соединения на скорости: 19200"_s},
            .does = u"tries the speed of the last connection; `false` when it does not answer"_s,
            .needsPort = true},
        {.topic = topic,
            .name = u"isPortReady"_s,
            .call = CALL(isPortReady()),
            .expectedValue = u"throws FrNoConnectionException: Необходимо открыть порт"_s,
            .does = u"throws while there is no open port"_s,
            .needsPort = true},
        {.topic = topic,
            .name = u"msleep"_s,
            .call = CALL(msleep(1)),
            .expectedValue = nothing,
            .does = u"sleeps so many milliseconds"_s},
    };
}

QList<Operation> information()
{
    const QString topic = u"Descriptions and information"_s;
    return {
        {topic, u"getDeviceStateDescription"_s, CALL(getDeviceStateDescription()), emptyText},
        {topic, u"getFnStateDescription"_s, CALL(getFnStateDescription()), emptyText},
        {topic, u"getCountersDescription"_s, CALL(getCountersDescription()), emptyText},
        {topic, u"getParametersDescription"_s, CALL(getParametersDescription()), emptyText},
        {topic, u"getDump"_s, dump, u"the stream, untouched"_s},
        {.topic = topic,
            .name = u"getDeviceInfo"_s,
            .call = CALL(getDeviceInfo()),
            .expectedValue = u"empty model and producer"_s,
            .cloud = u"default; filled with model 1, \"Атол Онлайн\", and producer 4"_s},
        {topic, u"getDeviceSettings"_s, CALL(getDeviceSettings()), u"the settings in force"_s},
        {topic, u"getSendLinesTemplate"_s, CALL(getSendLinesTemplate()), emptyText},
        {topic, u"getFrModeString"_s, CALL(getFrModeString()), emptyText},
        {topic, u"getInn"_s, CALL(getInn()), emptyText},
        {topic, u"getFfdVersion"_s, CALL(getFfdVersion()), emptyText},
        {topic, u"queryData"_s, CALL(queryData(text)), u"empty value"_s},
        {topic, u"getFnInfo"_s, CALL(getFnInfo()), emptyRecord},
        {.topic = topic,
            .name = u"getFiscalInfo"_s,
            .call = CALL(getFiscalInfo(5, true)),
            .expectedValue = emptyRecord,
            .cloud = u"default; filled by checkClose"_s},
        {topic, u"getOfdStatusInfo"_s, CALL(getOfdStatusInfo()), emptyRecord},
        {topic, u"getKkmRegisterBeg"_s, CALL(getKkmRegisterBeg()), emptyRecord},
        {topic, u"getKkmRegisterEnd"_s, CALL(getKkmRegisterEnd()), emptyRecord},
        {topic, u"getFnDocument"_s, CALL(getFnDocument(1)), emptyRecord},
        {.topic = topic,
            .name = u"checkOption"_s,
            .call = CALL(checkOption(hw::fr::Option::Bit2)),
            .expectedValue = u"true"_s,
            .does = u"whether the option is on; bits 2, 19 and 24 are to begin with"_s,
            .cloud = u"default; bits 19 and 24 are off, UseFn and bits 25 and 37 are on"_s},
        {.topic = topic,
            .name = u"setOption"_s,
            .call = CALL(setOption(hw::fr::Option::Bit2, true)),
            .expectedValue = nothing,
            .does = u"switches the option, unless the settings hold it"_s},
        {.topic = topic,
            .name = u"useFN"_s,
            .call = CALL(useFN()),
            .expectedValue = no,
            .does = u"whether the option UseFn is on; it is not to begin with"_s,
            .cloud = u"default; the option is on"_s},
        {.topic = topic,
            .name = u"setParams"_s,
            .call = CALL(setParams({FrParameter(1, 2, 3, text)})),
            .expectedValue = no,
            .does = u"hands each to legacySetParam until one is refused; `false` when one was"_s},
        {topic, u"legacySetParam"_s, CALL(legacySetParam(1, 2, 3, text)), no},
        {topic, u"getHoursDifferenceLimit"_s, CALL(getHoursDifferenceLimit()), u"-1"_s},
        {.topic = topic,
            .name = u"getNumber"_s,
            .call = CALL(getNumber()),
            .expectedValue = u"0"_s,
            .does = u"the number that was set, 0 to begin with"_s},
        {.topic = topic,
            .name = u"setNumber"_s,
            .call = CALL(setNumber(0)),
            .expectedValue = nothing,
            .does = u"keeps the number"_s},
        {.topic = topic,
            .name = u"setErrorNotificationHandler"_s,
            .call = CALL(setErrorNotificationHandler({})),
            .expectedValue = nothing,
            .does = u"keeps the handler"_s},
        {.topic = topic,
            .name = u"setOfdNotificationHandler"_s,
            .call = CALL(setOfdNotificationHandler({})),
            .expectedValue = nothing,
            .does = u"keeps the handler"_s},
    };
}

QList<Operation> printing()
{
    const QString topic = u"Printing, fonts, cliché and logo"_s;
    return {
        {topic, u"setFont"_s, CALL(setFont({EFrDriver::FontTypes::Normal})), nothing,
            {u"debug: Установка шрифта не поддерживается устройством"_s}},
        {.topic = topic,
            .name = u"setLineSpacing"_s,
            .call = CALL(setLineSpacing(0)),
            .expectedValue = nothing,
            .expectedLog = {u"debug: Установка межстрочного интервала не поддерживается устройством"_s},
            .does = u"nothing; no log line for -1"_s},
        {topic, u"resetFont"_s, CALL(resetFont()), nothing},
        {topic, u"loadFont"_s, CALL(loadFont(Font())), no},
        {topic, u"getBandWidthFonts"_s, CALL(getBandWidthFonts()), emptyMap},
        {topic, u"beep"_s, CALL(beep()), nothing,
            {u"info: Подача звукового сигнала не поддерживается устройством"_s}},
        {topic, u"drawerOpen"_s, CALL(drawerOpen()), nothing},
        {topic, u"isCashDrawerOpened"_s, CALL(isCashDrawerOpened()), no},
        {topic, u"cutAfterChecksClosing"_s, CALL(cutAfterChecksClosing()), nothing},
        {topic, u"cutPaper"_s, CALL(cutPaper()), nothing},
        {topic, u"barcodePrint"_s, CALL(barcodePrint(Barcode())), nothing,
            {u"warn: Печать штрих-кода не поддерживается устройством"_s}},
        {topic, u"printLogo"_s, CALL(printLogo(Logo())), nothing},
        {topic, u"setCliche"_s, CALL(setCliche(lines)), no,
            {u"info: Программирование клише не поддерживается устройством"_s}},
        {topic, u"setTail"_s, CALL(setTail(lines)), no,
            {u"info: Программирование рекламного текста не поддерживается устройством"_s}},
        {topic, u"setGraphicCliche"_s, CALL(setGraphicCliche(text)), no,
            {u"info: Установка графического клише не поддерживается устройством"_s}},
        {topic, u"clearGraphicCliche"_s, CALL(clearGraphicCliche()), nothing},
        {topic, u"setProgramCliche"_s, CALL(setProgramCliche(lines)), nothing},
        {topic, u"setCheckTemplate"_s, CALL(setCheckTemplate(1, text)), nothing},
        {topic, u"loadImage"_s, CALL(loadImage(1, text)), emptyObject},
        {topic, u"printCodePageSymbols"_s, CALL(printCodePageSymbols(866)), nothing},
        {topic, u"setSymbolsMapping"_s, CALL(setSymbolsMapping({{u'ё', u'е'}})), nothing},
        {topic, u"addPostLines"_s, CALL(addPostLines({FrPrintData()})), nothing,
            {u"warn: Печать дополнительных элементов при закрытии чека не поддерживается"_s}},
        {topic, u"clearLinesForPrint"_s, CALL(clearLinesForPrint()), nothing},
        {topic, u"checkPaper"_s, CALL(checkPaper()), nothing},
        {.topic = topic,
            .name = u"generateQR"_s,
            .call = CALL(generateQR(text)),
            .expectedValue = u"21 rows"_s,
            .expectedLog = {u"info: Генерируем qr-code"_s, u"info: qr-code сгенерирован"_s},
            .does = u"the text as a matrix of modules"_s},
        {.topic = topic,
            .name = u"convertBytes2Bits"_s,
            .call = CALL(convertBytes2Bits({{1}, {0}}, false)),
            .expectedValue = u"2 rows"_s,
            .does = u"modules packed into bits"_s},
    };
}

QList<Operation> receipts()
{
    const QString topic = u"Receipts"_s;
    return {
        {.topic = topic,
            .name = u"checkOpen"_s,
            .call = CALL(checkOpen(document)),
            .expectedValue = nothing,
            .cloud = u"starts a sale receipt; any other type is refused"_s},
        {.topic = topic,
            .name = u"checkAddPosition"_s,
            .call = CALL(checkAddPosition(position())),
            .expectedValue = nothing,
            .expectedLog =
                {u"info: Добавление позиции в чек: Чай, цена 10.00, количество 2.000, сумма 20.00, "
                 u"скидка 0.00, налог 5"_s},
            .cloud = u"logs and appends a line"_s},
        {topic, u"checkStornoPosition"_s, CALL(checkStornoPosition(position())), nothing},
        {topic, u"checkTotal"_s, CALL(checkTotal()), nothing},
        {.topic = topic,
            .name = u"checkPay"_s,
            .call = CALL(checkPay(payment)),
            .expectedValue = nothing,
            .expectedLog = {u"info: Расчет по чеку: (2) 10.50"_s},
            .cloud = u"logs and adds to the payment type's sum"_s},
        {topic, u"checkPrint"_s, CALL(checkPrint(lines)), nothing},
        {.topic = topic,
            .name = u"checkClose"_s,
            .call = CALL(checkClose(document)),
            .expectedValue = emptyObject,
            .cloud = u"sends the receipt and waits for its fiscal result"_s},
        {topic, u"checkCancel"_s, CALL(checkCancel()), nothing},
        {topic, u"checkWaitForPrint"_s, CALL(checkWaitForPrint()), nothing},
        {topic, u"cancelCheckOpen"_s, CALL(cancelCheckOpen(document)), nothing},
        {topic, u"cancelCheckTotal"_s, CALL(cancelCheckTotal(document)), nothing},
        {topic, u"cancelCheckPay"_s, CALL(cancelCheckPay(document)), nothing},
        {topic, u"cancelCheckClose"_s, CALL(cancelCheckClose(document)), emptyObject},
        {topic, u"moneyCheckOpen"_s, CALL(moneyCheckOpen(sale, text)), nothing},
        {topic, u"moneyCheckPrint"_s, CALL(moneyCheckPrint(lines)), nothing},
        {topic, u"moneyCheckWaitForPrint"_s, CALL(moneyCheckWaitForPrint()), nothing},
        {topic, u"moneyCheckClose"_s, CALL(moneyCheckClose(10.5)), emptyObject},
        {topic, u"textDocOpen"_s, CALL(textDocOpen(sale)), nothing,
            {u"info: Открытие текстового документа"_s}},
        {topic, u"textDocPrint"_s, CALL(textDocPrint(lines)), nothing},
        {topic, u"textDocClose"_s, CALL(textDocClose()), nothing},
        {topic, u"continuePrintClosedDoc"_s, CALL(continuePrintClosedDoc()), nothing},
        {topic, u"isLastCheckWithNumber"_s, CALL(isLastCheckWithNumber(text)), no},
        {topic, u"getLastCheck"_s, CALL(getLastCheck(document)), emptyObject},
        {.topic = topic,
            .name = u"setRequisite"_s,
            .call = CALL(setRequisite(requisite)),
            .expectedValue = nothing,
            .expectedLog = {u"info: Запись реквизита 1008 (телефон или электронный адрес покупателя) в ФР"_s},
            .cloud = u"the same, and keeps 1008 and 1055 for the receipt"_s},
        {topic, u"checkMarkingCode"_s, CALL(checkMarkingCode(MarkedPosition(), true)), u"0"_s},
        {topic, u"clearMarkingCodes"_s, CALL(clearMarkingCodes()), nothing},
    };
}

QList<Operation> reports()
{
    const QString topic = u"Reports, shifts and counters"_s;
    return {
        {topic, u"vatReport"_s, CALL(vatReport()), nothing},
        {topic, u"zReport"_s, CALL(zReport()), emptyObject},
        {topic, u"xReport"_s, CALL(xReport()), emptyObject},
        {topic, u"xReportDept"_s, CALL(xReportDept()), emptyObject},
        {topic, u"fpReportInDatesRange"_s, CALL(fpReportInDatesRange(text, 1, 2, true)), nothing},
        {topic, u"fpReportInShiftsRange"_s, CALL(fpReportInShiftsRange(text, 1, 2, true)), nothing},
        {topic, u"d2dReport"_s, CALL(d2dReport(moment, moment, true)), nothing},
        {topic, u"z2zReport"_s, CALL(z2zReport(1, 2, true)), nothing},
        {topic, u"printLastZReport"_s, CALL(printLastZReport()), nothing},
        {topic, u"accountingReport"_s, CALL(accountingReport()), nothing},
        {topic, u"printEj"_s, CALL(printEj()), nothing},
        {topic, u"getEj"_s, CALL(getEj(1)), emptyList},
        {topic, u"openShift"_s, CALL(openShift()), nothing},
        {topic, u"isShiftOpen"_s, CALL(isShiftOpen()), u"true"_s},
        {topic, u"getMoneyCounters"_s, CALL(getMoneyCounters(sale)), u"count 0, sum 0"_s},
        {topic, u"getCheckCounters"_s, CALL(getCheckCounters(sale)), emptyMap},
        {topic, u"getPositionCounters"_s, CALL(getPositionCounters(sale)), emptyMap},
        {topic, u"getRelatedCounters"_s, CALL(getRelatedCounters()), emptyMap},
        {topic, u"getCheckCountersTries"_s, CALL(getCheckCountersTries()), u"1"_s},
        {topic, u"getLastShiftNumber"_s, CALL(getLastShiftNumber()), u"0"_s},
        {topic, u"getAnnulationCounter"_s, CALL(getAnnulationCounter()), u"0"_s},
        {topic, u"getFrDocNum"_s, CALL(getFrDocNum()), emptyText},
        {topic, u"getFrDocNumAfterClosing"_s, CALL(getFrDocNumAfterClosing()), emptyText},
        {topic, u"getFrDocCopy"_s, CALL(getFrDocCopy(1)), emptyText},
        {topic, u"getFrDocOffset"_s, CALL(getFrDocOffset()), u"-1"_s},
        {topic, u"printLastFnDocument"_s, CALL(printLastFnDocument()), nothing},
        {topic, u"printFnDocument"_s, CALL(printFnDocument(1)), nothing},
    };
}

QList<Operation> registration()
{
    const QString topic = u"Clock, payments, taxation, registration and users"_s;
    return {
        {topic, u"setDateTime"_s, CALL(setDateTime(moment)), no},
        {.topic = topic,
            .name = u"getDateTime"_s,
            .call = clock,
            .expectedValue = u"the host's clock"_s,
            .cloud = u"the same"_s},
        {topic, u"getDefaultPaymentType"_s, CALL(getDefaultPaymentType()), u"1"_s},
        {.topic = topic,
            .name = u"getMainPaymentType"_s,
            .call = CALL(getMainPaymentType(3)),
            .expectedValue = u"3"_s,
            .does = u"the type unchanged"_s},
        {topic, u"getDefaultTaxSystem"_s, CALL(getDefaultTaxSystem()), u"0"_s},
        {topic, u"getAllTaxSystems"_s, CALL(getAllTaxSystems()), emptyList},
        {topic, u"fiscalization"_s, CALL(fiscalization(text, text, text, text)), nothing},
        {topic, u"registration"_s,
            CALL(registration({general}, general, text, {RegistrationReason::FnChange}, {})), nothing},
        {topic, u"isRegistrationParametersChanged"_s, CALL(isRegistrationParametersChanged({{text, 1}})), no},
        {topic, u"maintenance"_s, CALL(maintenance()), nothing},
        {topic, u"cashierLogin"_s, CALL(cashierLogin(FrUser())), nothing},
        {topic, u"cashierLogout"_s, CALL(cashierLogout(FrUser())), nothing},
        {topic, u"useSKNO"_s, CALL(useSKNO()), no},
        {topic, u"isSKNOConnectedToServer"_s, CALL(isSKNOConnectedToServer()), no},
    };
}

} // namespace

const QList<Operation>& operations()
{
    static const QList<Operation> all =
        connection() + information() + printing() + receipts() + reports() + registration();
    return all;
}

OperationOutcome outcomeOf(const Operation& operation, BasicFrDriver& driver)
{
    LogCapture log;
    QString value;
    const QString end = outcomeOf([&] { value = operation.call(driver); });
    return {end == u"returned"_s ? value : u"throws "_s + end, log.take()};
}
