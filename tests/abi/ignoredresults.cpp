#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/abstractserialdriver.h"
#include "host/log/log4qt.h"
#include "host/records/deviceinfo.h"
#include "host/records/fdrequisite.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frparameter.h"
#include "host/transport/restclient.h"
#include "host/vposfrdriver.h"

// Every operation of the interfaces that returns something, called as a host may that does not need the
// result.

void ignoreResults(hw::AbstractFiscalRegister& device)
{
    device.getLegacyDriver();
    device.getPrinter();
    device.getDeviceId();
    device.isSpeedEnumerate();
    device.getUpgradeManager();
}

void ignoreResults(AbstractFrDriver& driver, std::ostream& out)
{
    const FiscalDocument document;
    constexpr auto sale = hw::fr::CheckType::Sale;
    driver.setDefaults();
    driver.getDeviceStateDescription();
    driver.getFnStateDescription();
    driver.getFnDocument(1);
    driver.getCountersDescription();
    driver.getParametersDescription();
    driver.getDump(0, 0, out);
    driver.getDeviceInfo();
    driver.getDeviceSettings();
    driver.loadFont({});
    driver.checkClose(document);
    driver.moneyCheckClose(0);
    driver.zReport();
    driver.xReport();
    driver.xReportDept();
    driver.getMoneyCounters(sale);
    driver.getCheckCounters(sale);
    driver.getPositionCounters(sale);
    driver.getLastShiftNumber();
    driver.getDefaultPaymentType();
    driver.getSendLinesTemplate();
    driver.setDateTime({});
    driver.getDateTime();
    driver.getHoursDifferenceLimit();
    driver.setCliche({});
    driver.setTail({});
    driver.getFrModeString();
    driver.getKkmRegisterBeg();
    driver.getKkmRegisterEnd();
    driver.getBandWidthFonts();
    driver.getInn();
    driver.setGraphicCliche({});
    driver.getFrDocNum();
    driver.getFrDocNumAfterClosing();
    driver.getFrDocCopy(1);
    driver.getFrDocOffset();
    driver.cancelCheckClose(document);
    driver.useSKNO();
    driver.isSKNOConnectedToServer();
    driver.checkOption(hw::fr::Option::UseFn);
    driver.isShiftOpen();
    driver.useFN();
    driver.getEj(1);
    driver.getOfdStatusInfo();
    driver.getFnInfo();
    driver.getFiscalInfo(1, false);
    driver.getFfdVersion();
    driver.getMainPaymentType(1);
    driver.getCheckCountersTries();
    driver.getDefaultTaxSystem();
    driver.getAllTaxSystems();
    driver.getNumber();
    driver.getRelatedCounters();
    driver.loadImage(1, {});
    driver.checkMarkingCode({}, false);
    driver.isRegistrationParametersChanged({});
    driver.getAnnulationCounter();
    driver.isCashDrawerOpened();
    driver.setParams({});
    driver.isLastCheckWithNumber({});
    driver.getLastCheck(document);
    driver.queryData({});
}

void ignoreResults(VposFrDriver& driver)
{
    driver.documentClose({});
    driver.getDocumentInfo({});
    driver.getLastResponse();
}

void ignoreResults(const AbstractSerialDriver& port)
{
    port.getPortKind();
}

void ignoreResults(RestClient& client)
{
    client.get({}, {}, {});
    client.post({}, {}, {});
    client.getResponseData();
}

#ifdef IGNORE_WHAT_MUST_NOT_BE
void ignoreLogger()
{
    Log4Qt::LogManager::logger({}, {});
}
#endif
