#include "register.h"

#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/log/log4qt.h"
#include "host/records/fdrequisite.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"
#include "host/vposfrdriver.h"
#include "plugin/atolonlinefiscalregisterfactory.h"

#include <QJsonDocument>
#include <QMetaObject>

using namespace Qt::StringLiterals;

Register::Register(const QList<QByteArray>& answers)
{
    Log4Qt::Logger::lines.clear();
    Log4Qt::LogManager::names.clear();
    RestClient::requests.clear();
    RestClient::script = answers;

    const hw::AtolOnlineFiscalRegisterFactory factory;
    device.reset(factory.getObject().value<QObject*>());
    device->setProperty("deviceId", 3);
    device->setProperty("url", u"https://service.example/v4"_s);
    device->setProperty("login", u"shop"_s);
    device->setProperty("password", u"secret"_s);
    device->setProperty("groupCode", u"group"_s);
    device->setProperty("inn", u"7700000000"_s);
    device->setProperty("requestInterval", 200);
    QMetaObject::invokeMethod(device.get(), "init");
}

Register::~Register() = default;

AbstractFrDriver& Register::driver() const
{
    return *qobject_cast<hw::AbstractFiscalRegister*>(device.get())->getLegacyDriver();
}

VposFrDriver& Register::cloudDriver() const
{
    return dynamic_cast<VposFrDriver&>(driver());
}

void Register::collect(const FiscalDocument& sale) const
{
    using Tag = EFrDriver::RequisiteTypes;
    FrPosition tea(u"Tea"_s, 99.995);
    FdRequisite supplier(1224, {});
    supplier.members = {{Tag(1171), {1171, u"+79990000001"_s}}, {Tag(1225), {1225, u"Supplier"_s}}};
    tea.requisites = {{Tag(1222), {1222, 32}}, {Tag(1224), supplier}, {Tag(1226), {1226, u"7700000001"_s}}};
    tea.mark = u"\x01\xAB"_s;

    driver().checkOpen(sale);
    driver().setRequisite({1008, u"+79990000000"_s});
    driver().setRequisite({1055, 4});
    driver().checkAddPosition(tea);
    driver().checkPay({.sum = 100, .type = 1});
}

FiscalDocument sale()
{
    return {.identifier = u"till-1"_s, .type = 0};
}

QVariantMap bodyOf(const RestClient::Request& request)
{
    return QJsonDocument::fromJson(request.body).toVariant().toMap();
}

QByteArray errorAnswer(int code)
{
    return R"({"error": {"code": )" + QByteArray::number(code) + R"(, "error_id": 5, "text": "words"}})";
}
