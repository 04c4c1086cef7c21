// minimalhost PLUGIN SETTINGS ID: sells a loaf of bread under the id, and says "registered", "refused" or
// "unknown". After "unknown", run it again with the same id: the service registers no id twice. SETTINGS has
// lines "key = value".
#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/exceptions.h"
#include "host/records/fdrequisite.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"
#include "host/vposfrdriver.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QPluginLoader>
#include <QTextStream>
#include <QVariant>

#include <algorithm>
#include <array>
#include <csignal>
#include <memory>
#include <time.h>

using namespace Qt::Literals::StringLiterals;

namespace {

enum Outcome
{
    Registered = 0,
    Error = 1,
    Refused = 3,
    Unknown = 4
};

volatile std::sig_atomic_t stopped = 0;

// Errors of a call, which say nothing about the receipt; any other error of a finished document is its end.
constexpr std::array aboutTheCall{0, 10, 11, 12, 13, 14, 20, 21, 30, 31, 33, 34, 40, 41, 50};
// Answers to a new receipt after which it is certainly not registered.
constexpr std::array refusals{2, 20, 31, 32};
constexpr int alreadyExists = 33;

template <typename Codes>
bool contains(const Codes& codes, int code)
{
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

int errorIn(const QJsonObject& answer)
{
    return answer["error"_L1].toObject()["code"_L1].toInt(-1);
}

// A value that the device refuses leaves the old one in place, and setProperty() returns true all the same.
bool configure(QObject& device, const QString& file)
{
    QFile settings(file);
    if (!settings.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    for (QTextStream lines(&settings); !lines.atEnd();) {
        const QString line = lines.readLine();
        const QByteArray key = line.section(u'=', 0, 0).trimmed().toUtf8();
        const QString value = line.section(u'=', 1).trimmed();
        if (line.startsWith(u'#') || !line.contains(u'='))
            continue;
        device.setProperty(key.constData(), value);
        if (device.metaObject()->indexOfProperty(key.constData()) < 0 ||
            device.property(key.constData()).toString() != value) {
            qWarning("%s is not accepted", key.constData());
            return false;
        }
    }
    return true;
}

void handOver(AbstractFrDriver& driver, const FiscalDocument& document)
{
    FrPosition loaf;
    loaf.setName(u"Хлеб ржаной"_s);
    loaf.setPriceWithDisc(54.9);
    loaf.setCount(1);
    loaf.setPossum(54.9);
    loaf.setTaxCode(1);
    loaf.setPaymentMethod(EFrDriver::FullPayment);
    loaf.setPaymentObject(EFrDriver::Commodity);

    driver.checkOpen(document);
    driver.setRequisite(FdRequisite(EFrDriver::RequisiteTypes(1008), u"buyer@example.com"_s));
    driver.setRequisite(FdRequisite(EFrDriver::AppliedTaxSystem, 1));
    driver.checkAddPosition(loaf);
    driver.checkPay(FrPayment(1, 54.9));
}

// checkClose() would wait by itself, for as long as it takes, and could not be interrupted.
Outcome await(VposFrDriver& service, const QString& uuid, int interval)
{
    for (int silent = 0; silent < 3 && !stopped;) {
        const timespec pause{interval / 1000, interval % 1000 * 1'000'000L};
        nanosleep(&pause, nullptr); // ends at a signal
        if (stopped)
            break;
        const QJsonObject before = service.getLastResponse();
        bool isNews = true;
        try {
            service.getDocumentInfo(uuid);
        } catch (const BasicException& e) { // also for a document that has failed
            qWarning("%s", e.what());
            isNews = service.getLastResponse() != before;
        }
        const QJsonObject answer = isNews ? service.getLastResponse() : QJsonObject();
        const QString status = answer["status"_L1].toString();
        const bool isOurs = answer["uuid"_L1].toString() == uuid;
        if (status == "done"_L1 && isOurs && !answer["payload"_L1].toObject().isEmpty())
            return Registered;
        // A real host asks again before it believes this and sells under a new id.
        if (status == "fail"_L1 && isOurs && !contains(aboutTheCall, errorIn(answer)))
            return Refused;
        silent = status == "wait"_L1 ? 0 : silent + 1;
    }
    return Unknown;
}

Outcome sell(AbstractFrDriver& driver, VposFrDriver& service, const QString& id, int interval)
{
    const FiscalDocument document(0, id);
    QString uuid;
    try {
        driver.connect();
        handOver(driver, document);
        uuid = service.documentClose(document);
    } catch (const BasicException& e) { // every exception that a driver throws
        qWarning("%s", e.what());
        return contains(refusals, errorIn(service.getLastResponse())) ? Refused : Unknown;
    }
    // The uuid is then that of the first attempt. A real host compares the totals, because the service does
    // not.
    if (errorIn(service.getLastResponse()) == alreadyExists)
        qWarning("this id was sent before");
    return await(service, uuid, interval);
}

Outcome run(const QStringList& arguments)
{
    QPluginLoader loader(QFileInfo(arguments.value(1)).absoluteFilePath()); // it would search its own folders
    QVariant made;
    if (!loader.instance() || !QMetaObject::invokeMethod(loader.instance(), "getObject", Qt::DirectConnection,
                                  Q_RETURN_ARG(QVariant, made))) {
        qWarning("%s", qPrintable(loader.errorString()));
        return Error;
    }
    const std::unique_ptr<QObject> device(made.value<QObject*>());
    auto* fiscalRegister = qobject_cast<hw::AbstractFiscalRegister*>(device.get());
    if (!fiscalRegister || !configure(*device, arguments.value(2)))
        return Error;
    QMetaObject::invokeMethod(device.get(), "init", Qt::DirectConnection);
    auto* driver = fiscalRegister->getLegacyDriver();
    auto* service = dynamic_cast<VposFrDriver*>(driver);
    return service ? sell(*driver, *service, arguments.value(3), device->property("requestInterval").toInt())
                   : Error;
}

} // namespace

int main(int argc, char** argv)
{
    struct sigaction stop
    {
    };
    stop.sa_handler = [](int) { stopped = 1; };
    sigaction(SIGINT, &stop, nullptr);
    sigaction(SIGTERM, &stop, nullptr);
    const QCoreApplication application(argc, argv);
    // Otherwise every step of every receipt goes to standard error.
    QLoggingCategory::setFilterRules(u"frdriver*.debug=false\nfrdriver*.info=false"_s);
    const Outcome outcome = run(QCoreApplication::arguments());
    const char* said[] = {"registered", "error", "", "refused", "unknown"};
    QTextStream(stdout) << said[outcome] << Qt::endl;
    return outcome;
}
