#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/exceptions.h"
#include "host/records/driveroptions.h"
#include "host/records/fiscaldocument.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"
#include "tests/support/scriptedtransport.h"

#include <QLibrary>
#include <QMetaProperty>
#include <QPluginLoader>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <typeinfo>

using namespace Qt::Literals::StringLiterals;

namespace {

// A transport that fails with an exception of the class.
template <typename E>
class Failing : public ScriptedTransport
{
public:
    bool post(const QUrl& /*url*/, const QByteArray& /*body*/, const Headers& /*headers*/) override
    {
        throw E(u"сбой"_s);
    }
};

template <typename E>
QString caughtAs(const std::function<void()>& call)
{
    try {
        call();
    } catch (const E& e) {
        return typeid(e) == typeid(E) ? e.tr().ru() : u"of a derived class"_s;
    } catch (const std::exception&) {
        return u"of another class"_s;
    }
    return u"nothing"_s;
}

class Border : public testing::Test
{
protected:
    Border() { loader.setFileName(QStringLiteral(PLUGIN_FILE)); }

    std::unique_ptr<QObject> newDevice()
    {
        QVariant object;
        QMetaObject::invokeMethod(
            loader.instance(), "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, object));
        return std::unique_ptr<QObject>(object.value<QObject*>());
    }

    // What a host catches that lets a new driver do this.
    template <typename E>
    QString caughtFrom(const std::function<void(AbstractFrDriver*)>& operation)
    {
        const std::unique_ptr<QObject> device = newDevice();
        QMetaObject::invokeMethod(device.get(), "init");
        AbstractFrDriver* driver = qobject_cast<hw::AbstractFiscalRegister*>(device.get())->getLegacyDriver();
        return caughtAs<E>([&] { operation(driver); });
    }

    // What it catches when the service answers with this error.
    template <typename E>
    QString caughtForCode(int code)
    {
        ScriptedTransport transport;
        transport.answer(R"({"error":{"code":)" + QByteArray::number(code) + R"(,"text":"t"}})");
        return caughtFrom<E>(&AbstractFrDriver::connect);
    }

    // What it catches when its own transport throws.
    template <typename E>
    QString caughtThrough()
    {
        const Failing<E> transport;
        return caughtFrom<E>(&AbstractFrDriver::connect);
    }

    QPluginLoader loader;
};

using PluginException = Border;
using PluginSettings = Border;
using PluginEntry = Border;

TEST_F(PluginException, IsCaughtByTheHostAsTheClassThatWasThrown)
{
    EXPECT_EQ(caughtForCode<FrWorkWithServiceException>(12), u"Неверный логин или пароль"_s);
    EXPECT_EQ(caughtForCode<FrDriverException>(30), u"Документ с указанным идентификатором не найден"_s);
    EXPECT_EQ(caughtForCode<FrCommandNotSupportException>(31), u"Команда не поддерживается"_s);
    EXPECT_EQ(caughtForCode<FrNoConnectionException>(40), u"Нет связи с ФР"_s);
    EXPECT_EQ(caughtForCode<DriverException>(11), u"of another class"_s) << "not a driver exception";
    EXPECT_EQ(caughtForCode<BasicException>(11), u"of a derived class"_s);
    EXPECT_EQ(caughtFrom<FrCommandException>(
                  [](AbstractFrDriver* driver) { driver->checkOpen(FiscalDocument(1, QString())); }),
        u"Тип чека не поддерживается ФР"_s);
    EXPECT_EQ(caughtFrom<FrWorkWithServiceException>(
                  [](AbstractFrDriver* driver) { driver->checkClose(FiscalDocument()); }),
        u"Требуется телефон или электронный адрес покупателя"_s);
}

// Their classes belong to the plugin, so a host knows them by name alone.
TEST_F(PluginException, OfTheServiceKeepsItsClass)
{
    const std::pair<int, QString> rows[] = {
        {11, u"atolonline::TokenExpired: Срок действия токена истёк"_s},
        {33, u"atolonline::DocumentExists: Документ с переданным идентификатором уже существует"_s},
        {34, u"atolonline::DocumentInProgress: Документ еще не обработан"_s},
    };
    for (const auto& [code, expected] : rows) {
        ScriptedTransport transport;
        transport.answer(R"({"error":{"code":)" + QByteArray::number(code) + R"(,"text":"t"}})");
        const std::unique_ptr<QObject> device = newDevice();
        QMetaObject::invokeMethod(device.get(), "init");
        auto* driver = qobject_cast<hw::AbstractFiscalRegister*>(device.get())->getLegacyDriver();
        EXPECT_EQ(outcomeOf([&] { driver->connect(); }), expected);
    }
}

TEST_F(PluginException, OfTheHostPassesThroughAsItIs)
{
    const QString message = u"сбой"_s;
    EXPECT_EQ(caughtThrough<BasicException>(), message);
    EXPECT_EQ(caughtThrough<DriverException>(), message);
    EXPECT_EQ(caughtThrough<FrDriverException>(), message);
    EXPECT_EQ(caughtThrough<FrCommandException>(), message);
    EXPECT_EQ(caughtThrough<FrWorkWithServiceException>(), message);
    EXPECT_EQ(caughtThrough<FrNoConnectionException>(), message);
    EXPECT_EQ(caughtThrough<FrCommandNotSupportException>(), message);
    EXPECT_EQ(caughtThrough<ComDriverException>(), message);
}

TEST_F(PluginSettings, ThatAreRefusedLeaveNoLine)
{
    const LogCapture log;
    const std::unique_ptr<QObject> device = newDevice();
    QMetaObject::invokeMethod(device.get(), "init");
    for (const int interval : {199, 0, -1})
        device->setProperty("requestInterval", interval);
    device->setProperty("paymentAddress", QString(257, u'x'));
    EXPECT_EQ(device->property("requestInterval").toInt(), 1000);
    EXPECT_EQ(device->property("paymentAddress").toString(), QString());
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(PluginSettings, CountTheCodeUnitsOfThePlaceOfSettlement)
{
    const std::unique_ptr<QObject> device = newDevice();
    const QString emoji = u"\U0001F600"_s;
    ASSERT_EQ(emoji.size(), 2);
    device->setProperty("paymentAddress", emoji.repeated(128));
    device->setProperty("paymentAddress", emoji.repeated(129));
    EXPECT_EQ(device->property("paymentAddress").toString(), emoji.repeated(128));
    device->setProperty("paymentAddress", u"я"_s.repeated(256));
    EXPECT_EQ(device->property("paymentAddress").toString(), u"я"_s.repeated(256));
}

TEST_F(PluginSettings, NameTheTypeOfTheDriverOptions)
{
    const std::unique_ptr<QObject> device = newDevice();
    const QMetaObject* meta = device->metaObject();
    const QMetaType type = meta->property(meta->indexOfProperty("driverOptions")).metaType();
    const QMetaType registered = QMetaType::fromName("hw::fr::DriverOptions");
    EXPECT_STREQ(type.name(), "hw::fr::DriverOptions");
    EXPECT_EQ(type, registered);
    EXPECT_EQ(registered.sizeOf(), qsizetype(sizeof(hw::fr::DriverOptions)));
}

TEST_F(PluginEntry, GivesOneFactoryWithoutAParent)
{
    QLibrary library(QStringLiteral(PLUGIN_FILE));
    const auto entry = reinterpret_cast<QObject* (*)()>(library.resolve("qt_plugin_instance"));
    ASSERT_NE(entry, nullptr) << library.errorString().toStdString();
    QObject* factory = entry();
    ASSERT_NE(factory, nullptr);
    EXPECT_EQ(entry(), factory);
    EXPECT_EQ(loader.instance(), factory);
    EXPECT_EQ(factory->parent(), nullptr);
}

} // namespace
