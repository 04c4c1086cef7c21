#include "frbase/basicfiscalregister.h"

#include "frbase/basicfrdriver.h"
#include "tests/support/qtprinters.h"

#include <QMetaClassInfo>
#include <QMetaProperty>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using hw::fr::DriverOptions;
using hw::fr::Option;

namespace {

class Device : public hw::BasicFiscalRegister
{
public:
    explicit Device(const QSharedPointer<BasicFrSettings>& frSettings, QObject* parent = nullptr)
        : BasicFiscalRegister(frSettings, parent)
    {
    }

    using BasicFiscalRegister::legacyDriver;
    using BasicFiscalRegister::settings;
    using BasicFiscalRegister::unusedProps;
};

struct DeviceTest : testing::Test
{
    QSharedPointer<BasicFrSettings> settings{new BasicFrSettings};
    Device device{settings};
};

QVariant optionsValue(const DriverOptions& options)
{
    return QVariant::fromValue(options);
}

TEST(Settings, HaveTheirDefaults)
{
    const BasicFrSettings settings;
    EXPECT_EQ(settings.getDeviceId(), 0U);
    EXPECT_TRUE(settings.isSpeedEnumerate());
    EXPECT_TRUE(settings.getDriverOptions().isEmpty());
    EXPECT_EQ(settings.parent(), nullptr);
}

TEST(Settings, KeepWhatIsSetWithoutACheck)
{
    BasicFrSettings settings;
    settings.setDeviceId(4294967295U);
    settings.setSpeedEnumerate(false);
    EXPECT_EQ(settings.getDeviceId(), 4294967295U);
    EXPECT_FALSE(settings.isSpeedEnumerate());
    settings.setSpeedEnumerate(true);
    EXPECT_TRUE(settings.isSpeedEnumerate());
}

TEST(Settings, AnswerTheirClassName)
{
    BasicFrSettings settings;
    EXPECT_EQ(settings.qt_metacast("BasicFrSettings"), &settings);
    EXPECT_EQ(settings.qt_metacast("QObject"), static_cast<QObject*>(&settings));
    EXPECT_EQ(settings.qt_metacast("hw::BasicFiscalRegister"), nullptr);
}

QString described(const QMetaProperty& property)
{
    const auto flag = [](bool on, const char* name) {
        return QString::fromLatin1(on ? "%1" : "not %1").arg(QLatin1String(name));
    };
    return QStringList{QString::fromLatin1(property.name()), QString::fromLatin1(property.metaType().name()),
        flag(property.isReadable(), "read"), flag(property.isWritable(), "written"),
        flag(property.isStored(), "stored"), flag(property.isScriptable(), "scriptable"),
        flag(property.isDesignable(), "designable"),
        flag(property.hasNotifySignal() || property.isConstant() || property.isResettable() ||
                 property.isFinal() || property.isRequired() || property.isUser(),
            "anything else")}
        .join(u", ");
}

QStringList ownProperties(const QMetaObject& meta)
{
    QStringList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        properties << described(meta.property(i));
    return properties;
}

TEST(Settings, ShowTheDeviceIdAsTheirOnlyProperty)
{
    EXPECT_EQ(ownProperties(BasicFrSettings::staticMetaObject),
        QStringList{
            u"deviceid, uint, read, not written, stored, scriptable, designable, not anything else"_s});
    BasicFrSettings settings;
    settings.setDeviceId(7);
    EXPECT_EQ(settings.property("deviceid"), QVariant(7U));
    EXPECT_FALSE(settings.setProperty("deviceid", 8U));
    EXPECT_EQ(settings.getDeviceId(), 7U);
}

TEST(Properties, OfTheDeviceAreTheseInThisOrder)
{
    const QString optionsType = QString::fromLatin1(QMetaType::fromType<DriverOptions>().name());
    EXPECT_EQ(ownProperties(hw::BasicFiscalRegister::staticMetaObject),
        (QStringList{
            u"hardwareClass, int, read, not written, stored, scriptable, not designable, not anything else"_s,
            u"deviceId, uint, read, written, stored, scriptable, designable, not anything else"_s,
            u"speedEnumerate, bool, read, written, stored, scriptable, designable, not anything else"_s,
            u"driverOptions, "_s + optionsType +
                u", not read, written, stored, scriptable, not designable, not anything else"_s}));
}

TEST(ClassInfo, LabelsThePropertiesForTheSettingsEditor)
{
    const QMetaObject& meta = hw::BasicFiscalRegister::staticMetaObject;
    QStringList pairs;
    for (int i = meta.classInfoOffset(); i < meta.classInfoCount(); ++i)
        pairs << QString::fromUtf8(meta.classInfo(i).name()) + u" = "_s +
                     QString::fromUtf8(meta.classInfo(i).value());
    EXPECT_EQ(pairs,
        (QStringList{u"deviceId:name = Номер ФР"_s, u"deviceId:type = num"_s, u"deviceId:max = 19"_s,
            u"deviceId:info = Номер фискального регистратора. Должен быть уникальным среди всех подключенных ФР, возможные значения - от 0 до 19. Этот номер используется в названиях секций dravo.ini для задания настроек для конкретного ФР (параметры программирования, соотнесение отделов и т д)"_s,
            u"speedEnumerate:name = Перебор скорости"_s, u"speedEnumerate:type = strEnum"_s,
            u"speedEnumerate:strEnum = выкл;вкл"_s,
            u"speedEnumerate:info = Выполнять перебор скорости при повторной попытке установки связи"_s}));
}

TEST_F(DeviceTest, IsNewWithItsParentItsSettingsAndNoDriver)
{
    QObject parent;
    const auto* child = new Device(settings, &parent);
    EXPECT_EQ(child->parent(), &parent);
    EXPECT_EQ(device.parent(), nullptr);
    EXPECT_EQ(device.settings, settings);
    EXPECT_EQ(device.getLegacyDriver(), nullptr);
    EXPECT_EQ(device.unusedProps, QStringList());
    EXPECT_FALSE(device.property("unusedProps").isValid());
}

TEST_F(DeviceTest, HasNoPrinterAndNoUpgrades)
{
    EXPECT_EQ(device.getPrinter(), nullptr);
    EXPECT_TRUE(device.getUpgradeManager().isNull());
}

TEST_F(DeviceTest, GivesOutItsDriver)
{
    device.legacyDriver = new BasicFrDriver(nullptr, u"device"_s, settings.get());
    EXPECT_EQ(device.getLegacyDriver(), device.legacyDriver);
}

TEST_F(DeviceTest, IsOfClass64WhateverTheSettingsHold)
{
    for (const unsigned int id : {0U, 64U, 65U}) {
        settings->setDeviceId(id);
        EXPECT_EQ(device.property("hardwareClass"), QVariant(64));
        EXPECT_EQ(device.getHardwareClass(), 64);
    }
    EXPECT_FALSE(device.setProperty("hardwareClass", 1));
    EXPECT_EQ(device.property("hardwareClass"), QVariant(64));
}

TEST_F(DeviceTest, StoresADeviceIdAboveTheAdvertisedMaximum)
{
    EXPECT_TRUE(device.setProperty("deviceId", 25U));
    EXPECT_EQ(device.property("deviceId"), QVariant(25U));
    EXPECT_EQ(settings->property("deviceid"), QVariant(25U));
    device.setDeviceId(3);
    EXPECT_EQ(settings->getDeviceId(), 3U);
    settings->setDeviceId(4);
    EXPECT_EQ(device.getDeviceId(), 4U);
}

TEST_F(DeviceTest, PassesTheSpeedSearchOnToTheSettings)
{
    EXPECT_EQ(device.property("speedEnumerate"), QVariant(true));
    EXPECT_TRUE(device.setProperty("speedEnumerate", false));
    EXPECT_FALSE(settings->isSpeedEnumerate());
    EXPECT_FALSE(device.isSpeedEnumerate());
    device.setSpeedEnumerate(true);
    EXPECT_TRUE(settings->isSpeedEnumerate());
}

TEST_F(DeviceTest, AnswersThroughTheHostInterface)
{
    hw::AbstractFiscalRegister& interface = device;
    interface.setDeviceId(5);
    interface.setSpeedEnumerate(false);
    EXPECT_EQ(interface.getDeviceId(), 5U);
    EXPECT_FALSE(interface.isSpeedEnumerate());
    EXPECT_EQ(interface.getLegacyDriver(), nullptr);
    EXPECT_EQ(interface.getPrinter(), nullptr);
    EXPECT_TRUE(interface.getUpgradeManager().isNull());
    EXPECT_EQ(settings->getDeviceId(), 5U);
}

TEST_F(DeviceTest, AnswersItsTwoClassNamesToACast)
{
    EXPECT_EQ(device.qt_metacast("hw::BasicFiscalRegister"), static_cast<hw::BasicFiscalRegister*>(&device));
    EXPECT_EQ(
        device.qt_metacast("AbstractFiscalRegister"), static_cast<hw::AbstractFiscalRegister*>(&device));
    EXPECT_EQ(device.qt_metacast("QObject"), static_cast<QObject*>(&device));
    EXPECT_EQ(device.qt_metacast("BasicFiscalRegister"), nullptr);
    EXPECT_EQ(device.qt_metacast("hw::AbstractFiscalRegister"), nullptr);
    EXPECT_EQ(device.qt_metacast("xx.tarvo.AbstractFiscalRegister/4.5"), nullptr);
}

TEST_F(DeviceTest, TakesDriverOptionsByTheirRegisteredName)
{
    const QMetaType type = QMetaType::fromName("hw::fr::DriverOptions");
    EXPECT_TRUE(type.isValid());
    EXPECT_EQ(type, QMetaType::fromType<DriverOptions>());
    const DriverOptions options{{Option::Bit2, false}};
    EXPECT_TRUE(device.setProperty("driverOptions", QVariant(type, &options)));
    EXPECT_EQ(settings->getDriverOptions(), options);
}

TEST_F(DeviceTest, MergesDriverOptions)
{
    EXPECT_TRUE(
        device.setProperty("driverOptions", optionsValue({{Option::Bit2, true}, {Option::UseFn, true}})));
    EXPECT_TRUE(
        device.setProperty("driverOptions", optionsValue({{Option::UseFn, false}, {Option::Bit19, false}})));
    EXPECT_EQ(settings->getDriverOptions(),
        (DriverOptions{{Option::Bit2, true}, {Option::UseFn, false}, {Option::Bit19, false}}));
    device.setDriverOptions({});
    EXPECT_EQ(settings->getDriverOptions().size(), 3);
}

TEST_F(DeviceTest, DoesNotShowItsDriverOptions)
{
    EXPECT_FALSE(device.property("driverOptions").isValid());
    device.setDriverOptions({{Option::Bit2, true}});
    EXPECT_FALSE(device.property("driverOptions").isValid());
    const QMetaObject* meta = device.metaObject();
    EXPECT_FALSE(meta->property(meta->indexOfProperty("driverOptions")).read(&device).isValid());
}

TEST_F(DeviceTest, CollectsTheNamesOfUnusedProperties)
{
    device.addUnusedProperties({u"a"_s});
    EXPECT_EQ(device.property("unusedProps"), QVariant(QStringList{u"a"_s}));
    device.addUnusedProperties({u"a"_s, u"b"_s});
    EXPECT_EQ(device.property("unusedProps"), QVariant(QStringList{u"a"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(device.unusedProps, (QStringList{u"a"_s, u"a"_s, u"b"_s}));
    EXPECT_TRUE(device.dynamicPropertyNames().contains("unusedProps"));
}

class NotingDriver : public BasicFrDriver
{
public:
    NotingDriver(QStringList& notes, BasicFrSettings* frSettings)
        : BasicFrDriver(nullptr, u"noting"_s, frSettings)
        , gone(notes)
    {
    }
    ~NotingDriver() override { gone << u"driver"_s; }
    Q_DISABLE_COPY_MOVE(NotingDriver)

private:
    QStringList& gone;
};

QStringList destroyed(const std::function<void(Device*)>& destroy)
{
    QStringList gone;
    auto* settings = new BasicFrSettings;
    QObject::connect(settings, &QObject::destroyed, [&] { gone << u"settings"_s; });
    auto* device = new Device(QSharedPointer<BasicFrSettings>(settings));
    QObject::connect(device, &QObject::destroyed, [&] { gone << u"object"_s; });
    device->legacyDriver = new NotingDriver(gone, settings);
    destroy(device);
    return gone;
}

TEST(DestroyedDevice, DeletesItsDriverThenReleasesTheSettings)
{
    const QStringList order{u"driver"_s, u"settings"_s, u"object"_s};
    EXPECT_EQ(destroyed([](Device* device) { delete device; }), order);
    EXPECT_EQ(destroyed([](Device* device) { delete static_cast<QObject*>(device); }), order);
    EXPECT_EQ(
        destroyed([](Device* device) { delete static_cast<hw::AbstractFiscalRegister*>(device); }), order);
}

TEST(DestroyedDevice, LeavesSettingsThatOthersShare)
{
    const QSharedPointer<BasicFrSettings> settings(new BasicFrSettings);
    delete new Device(settings);
    EXPECT_EQ(settings->getDeviceId(), 0U);
}

TEST(DestroyedDevice, LeavesADriverThatWasReplaced)
{
    QStringList gone;
    const QSharedPointer<BasicFrSettings> settings(new BasicFrSettings);
    auto* first = new NotingDriver(gone, settings.get());
    {
        Device device(settings);
        device.legacyDriver = first;
        device.legacyDriver = new NotingDriver(gone, settings.get());
    }
    EXPECT_EQ(gone, QStringList{u"driver"_s});
    delete first;
}

} // namespace
