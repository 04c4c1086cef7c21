#include "frbase/basicfiscalregister.h"

#include "frbase/basicfrdriver.h"
#include "tests/support/qtprinters.h"

#include <QMetaProperty>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

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

TEST(Settings, HaveDefaultsAndKeepWhatIsSet)
{
    BasicFrSettings settings;
    EXPECT_EQ(settings.getDeviceId(), 0U);
    EXPECT_TRUE(settings.isSpeedEnumerate());
    EXPECT_TRUE(settings.getDriverOptions().isEmpty());
    EXPECT_EQ(settings.parent(), nullptr);
    settings.setDeviceId(4294967295U);
    settings.setSpeedEnumerate(false);
    EXPECT_EQ(settings.getDeviceId(), 4294967295U);
    EXPECT_FALSE(settings.isSpeedEnumerate());
    EXPECT_EQ(settings.qt_metacast("BasicFrSettings"), &settings);
}

TEST(Settings, HaveTheDeviceIdAsTheirOnlyPropertyWhichIsReadOnly)
{
    BasicFrSettings settings;
    const QMetaObject* meta = settings.metaObject();
    ASSERT_EQ(meta->propertyCount() - meta->propertyOffset(), 1);
    const QMetaProperty id = meta->property(meta->propertyOffset());
    EXPECT_STREQ(id.name(), "deviceid");
    EXPECT_EQ(id.metaType(), QMetaType::fromType<uint>());
    EXPECT_TRUE(id.isStored() && id.isScriptable() && id.isDesignable());
    EXPECT_FALSE(id.isConstant() || id.isResettable() || id.isFinal() || id.isRequired() || id.isUser() ||
                 id.hasNotifySignal());
    settings.setDeviceId(7);
    EXPECT_EQ(settings.property("deviceid"), QVariant(7U));
    EXPECT_FALSE(settings.setProperty("deviceid", 8U));
    EXPECT_EQ(settings.getDeviceId(), 7U);
}

// The properties and their labels are checked in tests/plugin, on the device of the plugin.
struct DeviceTest : testing::Test
{
    QSharedPointer<BasicFrSettings> settings{new BasicFrSettings};
    Device device{settings};
};

TEST_F(DeviceTest, StartsWithItsSettingsAndNothingElse)
{
    QObject parent;
    EXPECT_EQ((new Device(settings, &parent))->parent(), &parent);
    EXPECT_EQ(device.parent(), nullptr);
    EXPECT_EQ(device.settings, settings);
    EXPECT_EQ(device.getLegacyDriver(), nullptr);
    EXPECT_EQ(device.getPrinter(), nullptr);
    EXPECT_TRUE(device.getUpgradeManager().isNull());
    EXPECT_EQ(device.unusedProps, QStringList());
    EXPECT_FALSE(device.property("unusedProps").isValid());
}

TEST_F(DeviceTest, HandsOutItsDriver)
{
    device.legacyDriver = new BasicFrDriver(nullptr, u"device"_s, settings.get());
    EXPECT_EQ(device.getLegacyDriver(), device.legacyDriver);
}

TEST_F(DeviceTest, IsOfClass64WhateverTheSettings)
{
    for (const unsigned int id : {0U, 64U, 65U}) {
        settings->setDeviceId(id);
        EXPECT_EQ(device.property("hardwareClass"), QVariant(64));
        EXPECT_EQ(device.getHardwareClass(), 64);
    }
    EXPECT_FALSE(device.setProperty("hardwareClass", 1));
}

TEST_F(DeviceTest, KeepsItsPropertiesInTheSettings)
{
    EXPECT_TRUE(device.setProperty("deviceId", 25U)) << "above the advertised maximum";
    EXPECT_EQ(device.property("deviceId"), QVariant(25U));
    EXPECT_EQ(settings->getDeviceId(), 25U);
    EXPECT_EQ(device.property("speedEnumerate"), QVariant(true));
    EXPECT_TRUE(device.setProperty("speedEnumerate", false));
    EXPECT_FALSE(settings->isSpeedEnumerate());

    hw::AbstractFiscalRegister& interface = device;
    interface.setDeviceId(3);
    interface.setSpeedEnumerate(true);
    EXPECT_EQ(settings->getDeviceId(), 3U);
    EXPECT_TRUE(settings->isSpeedEnumerate());
    settings->setDeviceId(4);
    settings->setSpeedEnumerate(false);
    EXPECT_EQ(interface.getDeviceId(), 4U);
    EXPECT_FALSE(interface.isSpeedEnumerate());
}

TEST_F(DeviceTest, CanBeCastToItsClassAndItsInterfaceByNameOnly)
{
    EXPECT_EQ(device.qt_metacast("hw::BasicFiscalRegister"), static_cast<hw::BasicFiscalRegister*>(&device));
    EXPECT_EQ(
        device.qt_metacast("AbstractFiscalRegister"), static_cast<hw::AbstractFiscalRegister*>(&device));
    EXPECT_EQ(device.qt_metacast("QObject"), static_cast<QObject*>(&device));
    for (const char* other :
        {"BasicFiscalRegister", "hw::AbstractFiscalRegister", "xx.tarvo.AbstractFiscalRegister/4.5"})
        EXPECT_EQ(device.qt_metacast(other), nullptr) << other;
}

TEST_F(DeviceTest, MergesDriverOptionsAndDoesNotShowThem)
{
    const QMetaType type = QMetaType::fromName("hw::fr::DriverOptions");
    EXPECT_EQ(type, QMetaType::fromType<DriverOptions>());
    const DriverOptions first{{Option::Bit2, true}, {Option::UseFn, true}};
    EXPECT_TRUE(device.setProperty("driverOptions", QVariant(type, &first)));
    EXPECT_TRUE(device.setProperty(
        "driverOptions", QVariant::fromValue(DriverOptions{{Option::UseFn, false}, {Option::Bit19, false}})));
    device.setDriverOptions({});
    EXPECT_EQ(settings->getDriverOptions(),
        (DriverOptions{{Option::Bit2, true}, {Option::UseFn, false}, {Option::Bit19, false}}));

    EXPECT_FALSE(device.property("driverOptions").isValid());
    const QMetaObject* meta = device.metaObject();
    EXPECT_FALSE(meta->property(meta->indexOfProperty("driverOptions")).read(&device).isValid());
}

TEST_F(DeviceTest, CollectsTheNamesOfUnusedProperties)
{
    device.addUnusedProperties({u"a"_s});
    device.addUnusedProperties({u"a"_s, u"b"_s});
    EXPECT_EQ(device.unusedProps, (QStringList{u"a"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(device.property("unusedProps"), QVariant(device.unusedProps));
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

TEST(DestroyedDevice, LeavesSharedSettingsAndAReplacedDriver)
{
    QStringList gone;
    const QSharedPointer<BasicFrSettings> settings(new BasicFrSettings);
    const auto replaced = std::make_unique<NotingDriver>(gone, settings.get());
    {
        Device device(settings);
        device.legacyDriver = replaced.get();
        device.legacyDriver = new NotingDriver(gone, settings.get());
    }
    EXPECT_EQ(gone, QStringList{u"driver"_s});
    EXPECT_EQ(settings->getDeviceId(), 0U);
}

} // namespace
