#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/exceptions.h"
#include "host/records/driveroptions.h"
#include "host/records/fiscaldocument.h"
#include "host/vposfrdriver.h"
#include "tests/support/qtprinters.h"
#include "tests/support/scriptedtransport.h"

#include <QCborMap>
#include <QCborValue>
#include <QJsonObject>
#include <QLibrary>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QPointer>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

class Plugin : public testing::Test
{
protected:
    Plugin() { loader.setFileName(QStringLiteral(PLUGIN_FILE)); }

    std::unique_ptr<QObject> device()
    {
        QObject* factory = loader.instance();
        EXPECT_NE(factory, nullptr) << loader.errorString().toStdString();
        QVariant object;
        if (factory)
            QMetaObject::invokeMethod(
                factory, "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, object));
        return std::unique_ptr<QObject>(object.value<QObject*>());
    }

    static hw::AbstractFiscalRegister* registerOf(const std::unique_ptr<QObject>& object)
    {
        return qobject_cast<hw::AbstractFiscalRegister*>(object.get());
    }

    QPluginLoader loader;
};

TEST_F(Plugin, HasReadableMetadataWithoutBeingLoaded)
{
    QJsonObject metadata = loader.metaData();
    EXPECT_FALSE(loader.isLoaded());
    EXPECT_EQ(metadata.value(u"IID"_s).toString(), u"AtolOnlineFiscalRegisterFactory"_s);
    EXPECT_EQ(metadata.value(u"className"_s).toString(), u"AtolOnlineFiscalRegisterFactory"_s);
    EXPECT_EQ(metadata.value(u"MetaData"_s).toObject(),
        (QJsonObject{{u"name"_s, u"atolonline"_s}, {u"type"_s, u"fr"_s}}));
}

// As Qt declares it: the block that the plugin's entry returns.
struct MetadataBlock
{
    const void* data;
    std::size_t size;
};

TEST_F(Plugin, ReturnsAMetadataBlockOf104BytesWithItsMap)
{
    QLibrary library(QStringLiteral(PLUGIN_FILE));
    const auto query = reinterpret_cast<MetadataBlock (*)()>(library.resolve("qt_plugin_query_metadata_v2"));
    ASSERT_NE(query, nullptr) << library.errorString().toStdString();
    const MetadataBlock block = query();
    ASSERT_EQ(block.size, 104U);
    const QByteArray bytes(static_cast<const char*>(block.data), 104);
    // Format of the metadata, then the Qt that the plugin was built with.
    EXPECT_EQ(bytes.first(3), QByteArray("\x01\x06", 2) + char(QT_VERSION_MINOR));
    const QString name = u"AtolOnlineFiscalRegisterFactory"_s;
    EXPECT_EQ(QCborValue::fromCbor(bytes.sliced(4)).toMap(),
        (QCborMap{{2, name}, {3, name}, {4, QCborMap{{u"name"_s, u"atolonline"_s}, {u"type"_s, u"fr"_s}}}}));
}

TEST_F(Plugin, HasAFactoryOfOneSlotAndNoInterface)
{
    QObject* factory = loader.instance();
    ASSERT_NE(factory, nullptr) << loader.errorString().toStdString();
    EXPECT_EQ(loader.instance(), factory);
    const QMetaObject* meta = factory->metaObject();
    EXPECT_STREQ(meta->className(), "hw::AtolOnlineFiscalRegisterFactory");
    EXPECT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    const QMetaMethod method = meta->method(meta->methodOffset());
    EXPECT_EQ(method.methodSignature(), "getObject()");
    EXPECT_STREQ(method.typeName(), "QVariant");
    EXPECT_EQ(method.methodType(), QMetaMethod::Slot);
    EXPECT_TRUE(method.isConst());
    EXPECT_EQ(meta->propertyCount(), meta->propertyOffset());
    EXPECT_EQ(meta->classInfoCount(), 0);
    EXPECT_EQ(factory->qt_metacast("hw::AtolOnlineFiscalRegisterFactory"), factory);
    EXPECT_EQ(factory->qt_metacast("AtolOnlineFiscalRegisterFactory"), nullptr);
    EXPECT_EQ(factory->qt_metacast("xx.tarvo.AbstractFiscalRegister/4.5"), nullptr);
}

TEST_F(Plugin, MakesANewFactoryAfterTheFirstWasDestroyed)
{
    const QPointer<QObject> first(loader.instance());
    delete first.data();
    QObject* second = loader.instance();
    ASSERT_NE(second, nullptr);
    EXPECT_STREQ(second->metaObject()->className(), "hw::AtolOnlineFiscalRegisterFactory");
}

TEST_F(Plugin, CreatesIndependentDevicesAsPointersToTheirOwnType)
{
    QVariant object;
    ASSERT_TRUE(QMetaObject::invokeMethod(
        loader.instance(), "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, object)));
    EXPECT_STREQ(object.typeName(), "hw::AtolOnlineFiscalRegister*");
    EXPECT_TRUE(object.metaType().flags().testFlag(QMetaType::PointerToQObject));
    const std::unique_ptr<QObject> first(object.value<QObject*>());
    const std::unique_ptr<QObject> second = device();
    ASSERT_NE(first.get(), second.get());
    first->setProperty("login", u"first"_s);
    EXPECT_EQ(second->property("login").toString(), QString());
    EXPECT_EQ(first->parent(), nullptr);
}

TEST_F(Plugin, CreatesDevicesThatCanBeCastByClassAndByInterface)
{
    const std::unique_ptr<QObject> object = device();
    hw::AbstractFiscalRegister* fiscal = registerOf(object);
    ASSERT_NE(fiscal, nullptr);
    EXPECT_EQ(object->qt_metacast("hw::AtolOnlineFiscalRegister"), object.get());
    EXPECT_EQ(object->qt_metacast("xx.tarvo.AbstractFiscalRegister/4.5"), fiscal);
    EXPECT_EQ(object->qt_metacast("hw::BasicFiscalRegister"), object.get());
    EXPECT_EQ(object->qt_metacast("AbstractFiscalRegister"), fiscal);
    EXPECT_EQ(object->qt_metacast("QObject"), object.get());
    EXPECT_EQ(object->qt_metacast("AbstractFiscalRegister/4.5"), nullptr);
}

TEST_F(Plugin, CreatesDevicesThatCanBeDeletedThroughTheInterface)
{
    QObject* object = device().release();
    const QPointer<QObject> watch(object);
    delete qobject_cast<hw::AbstractFiscalRegister*>(object);
    EXPECT_TRUE(watch.isNull());
}

TEST_F(Plugin, DescribesItsSettingsInOrder)
{
    const std::unique_ptr<QObject> object = device();
    const QMetaObject* meta = object->metaObject();
    QStringList pairs;
    for (int i = 0; i < meta->classInfoCount(); ++i)
        pairs << QString::fromUtf8(meta->classInfo(i).name()) + u'=' +
                     QString::fromUtf8(meta->classInfo(i).value());
    const QStringList expected{
        u"deviceId:name=Номер ФР"_s,
        u"deviceId:type=num"_s,
        u"deviceId:max=19"_s,
        u"deviceId:info=Номер фискального регистратора. Должен быть уникальным среди всех подключенных "
        u"ФР, возможные значения - от 0 до 19. Этот номер используется в названиях секций dravo.ini "
        u"для задания настроек для конкретного ФР (параметры программирования, соотнесение отделов и т "
        u"д)"_s,
        u"speedEnumerate:name=Перебор скорости"_s,
        u"speedEnumerate:type=strEnum"_s,
        u"speedEnumerate:strEnum=выкл;вкл"_s,
        u"speedEnumerate:info=Выполнять перебор скорости при повторной попытке установки связи"_s,
        u"name=AtolOnline"_s,
        u"type=Fr"_s,
        u"displayName=Атол Онлайн"_s,
        u"devices=AtolOnline"_s,
        u"info=Драйвер облачного фискального регистратора Атол Онлайн"_s,
        u"url:name=Адрес сервера"_s,
        u"url:info=Адрес сервера Атол Онлайн"_s,
        u"login:name=Имя пользователя"_s,
        u"login:info=Имя пользователя для доступа к Атол Онлайн"_s,
        u"password:name=Пароль"_s,
        u"password:info=Пароль для доступа к Атол Онлайн"_s,
        u"requestInterval:name=Интервал запроса статуса"_s,
        u"requestInterval:info=Интервал запроса статуса отправленного документа в миллисекундах. Не "
        u"может быть меньше 200 мс."_s,
        u"email:name=Электронный адрес организации"_s,
        u"email:info=Электронный адрес организации (email) для передачи в ОФД"_s,
        u"inn:name=ИНН организации"_s,
        u"inn:info=ИНН организации. 10 или 12 символов, только цифры"_s,
        u"paymentAddress:name=Место расчетов"_s,
        u"paymentAddress:info=Место расчетов. Максимальная длина строки - 256 символов"_s,
        u"groupCode:name=Код группы"_s,
        u"groupCode:info=Код группы"_s,
    };
    EXPECT_EQ(pairs, expected);
}

TEST_F(Plugin, OffersItsSettingsAsPropertiesInOrder)
{
    const std::unique_ptr<QObject> object = device();
    const QMetaObject* meta = object->metaObject();
    QStringList properties;
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const auto flag = [](bool set, const char* name) {
            return set ? QString::fromLatin1(name) : QString();
        };
        properties << QString::fromLatin1(property.name()) + u' ' + QString::fromLatin1(property.typeName()) +
                          u' ' + flag(property.isReadable(), "r") + flag(property.isWritable(), "w") +
                          flag(property.isStored(), "s") + flag(property.isScriptable(), "c") +
                          flag(property.isDesignable(), "d") +
                          flag(property.hasNotifySignal() || property.isConstant() ||
                                   property.isResettable() || property.isFinal() || property.isRequired() ||
                                   property.isUser(),
                              "x");
    }
    const QStringList expected{u"hardwareClass int rsc"_s, u"deviceId uint rwscd"_s,
        u"speedEnumerate bool rwscd"_s, u"driverOptions hw::fr::DriverOptions wsc"_s, u"url QString rwscd"_s,
        u"login QString rwscd"_s, u"password QString rwscd"_s, u"requestInterval int rwscd"_s,
        u"email QString rwscd"_s, u"inn QString rwscd"_s, u"paymentAddress QString rwscd"_s,
        u"groupCode QString rwscd"_s};
    EXPECT_EQ(properties, expected);
    EXPECT_EQ(object->property("unusedProps").toStringList(), QStringList{u"speedEnumerate"_s});
    EXPECT_EQ(object->property("hardwareClass").toInt(), 64);
}

TEST_F(Plugin, OffersOneMethodOfItsOwn)
{
    const std::unique_ptr<QObject> object = device();
    const QMetaObject* meta = object->metaObject();
    QStringList methods;
    for (int i = QObject::staticMetaObject.methodCount(); i < meta->methodCount(); ++i)
        methods << QString::fromLatin1(meta->method(i).methodSignature());
    EXPECT_EQ(methods, QStringList{u"init()"_s});
}

TEST_F(Plugin, AppendsASlashToTheAddress)
{
    const std::unique_ptr<QObject> object = device();
    const std::pair<const char*, const char*> rows[] = {
        {"https://a/v4", "https://a/v4/"}, {"https://a/v4/", "https://a/v4/"}, {"", "/"}};
    for (const auto& [written, stored] : rows) {
        object->setProperty("url", QString::fromLatin1(written));
        EXPECT_EQ(object->property("url").toString(), QString::fromLatin1(stored));
    }
}

TEST_F(Plugin, SilentlyIgnoresAnIntervalBelow200Milliseconds)
{
    const std::unique_ptr<QObject> object = device();
    const std::pair<int, int> rows[] = {
        {199, 1000}, {100, 1000}, {-5, 1000}, {200, 200}, {199, 200}, {60000, 60000}};
    for (const auto& [written, stored] : rows) {
        object->setProperty("requestInterval", written);
        EXPECT_EQ(object->property("requestInterval").toInt(), stored);
    }
}

TEST_F(Plugin, SilentlyIgnoresAPaymentAddressOver256Characters)
{
    const std::unique_ptr<QObject> object = device();
    object->setProperty("paymentAddress", QString(256, u'я'));
    object->setProperty("paymentAddress", QString(257, u'x'));
    EXPECT_EQ(object->property("paymentAddress").toString(), QString(256, u'я'));
}

TEST_F(Plugin, StoresEveryOtherSettingUnchanged)
{
    const std::unique_ptr<QObject> object = device();
    for (const char* name : {"login", "password", "email", "inn", "groupCode"}) {
        object->setProperty(name, u"не ИНН/ "_s);
        EXPECT_EQ(object->property(name).toString(), u"не ИНН/ "_s) << name;
    }
    object->setProperty("deviceId", 25U);
    EXPECT_EQ(registerOf(object)->getDeviceId(), 25U);
}

TEST_F(Plugin, CreatesItsCloudDriverInInit)
{
    const std::unique_ptr<QObject> object = device();
    hw::AbstractFiscalRegister* fiscal = registerOf(object);
    EXPECT_EQ(fiscal->getLegacyDriver(), nullptr);
    EXPECT_EQ(fiscal->getPrinter(), nullptr);
    EXPECT_TRUE(fiscal->getUpgradeManager().isNull());
    ASSERT_TRUE(QMetaObject::invokeMethod(object.get(), "init"));
    EXPECT_NE(dynamic_cast<VposFrDriver*>(fiscal->getLegacyDriver()), nullptr);
}

TEST_F(Plugin, ReplacesTheDriverInASecondInitWithoutDeletingIt)
{
    const std::unique_ptr<QObject> object = device();
    QMetaObject::invokeMethod(object.get(), "init");
    const std::unique_ptr<AbstractFrDriver> first(registerOf(object)->getLegacyDriver());
    first->setNumber(7);
    QMetaObject::invokeMethod(object.get(), "init");
    EXPECT_NE(registerOf(object)->getLegacyDriver(), first.get());
    EXPECT_EQ(first->getNumber(), 7);
}

TEST_F(Plugin, SharesTransportAndExceptionsWithTheHost)
{
    ScriptedTransport transport;
    transport.answer(R"({"error":{"code":12,"text":"t"}})");
    const std::unique_ptr<QObject> object = device();
    object->setProperty("url", u"https://service.example/v4"_s);
    QMetaObject::invokeMethod(object.get(), "init");
    object->setProperty("login", u"later"_s);
    AbstractFrDriver* driver = registerOf(object)->getLegacyDriver();
    EXPECT_THROW(driver->connect(), FrWorkWithServiceException);
    EXPECT_THROW(driver->checkOpen(FiscalDocument(1, QString())), FrCommandException);
    ASSERT_EQ(transport.requestLines(), QStringList{u"POST https://service.example/v4/getToken"_s});
    EXPECT_EQ(transport.requests().first().json().value(u"login"_s).toString(), u"later"_s);
}

TEST_F(Plugin, AcceptsDriverOptionsUnderTheHostsTypeName)
{
    const std::unique_ptr<QObject> object = device();
    EXPECT_EQ(QMetaType::fromName("hw::fr::DriverOptions"), QMetaType::fromType<hw::fr::DriverOptions>());
    EXPECT_TRUE(object->setProperty(
        "driverOptions", QVariant::fromValue(hw::fr::DriverOptions{{hw::fr::Option::Bit2, false}})));
    EXPECT_FALSE(object->property("driverOptions").isValid());
    QMetaObject::invokeMethod(object.get(), "init");
    EXPECT_FALSE(registerOf(object)->getLegacyDriver()->checkOption(hw::fr::Option::Bit2));
}

} // namespace
