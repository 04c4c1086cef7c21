#include "plugin/atolonlinefiscalregister.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QList<const QObject*> tracked;

} // namespace

// A QSharedPointer reports every QObject that it is created from to this function of Qt, which does nothing.
// The definition in a program takes its place.
void QtSharedPointer::ExternalRefCountData::setQObjectShared(const QObject* object, bool enable)
{
    if (enable)
        tracked << object;
}

namespace {

class Device : public hw::AtolOnlineFiscalRegister
{
public:
    void replaceSettings(const QSharedPointer<BasicFrSettings>& other) { settings = other; }
};

TEST(DeviceSettings, AreOfTheCloudRegisterOrNone)
{
    Device device;
    const QSharedPointer<AtolOnlineSettings> own = device.getSettings();
    ASSERT_FALSE(own.isNull());
    device.replaceSettings(QSharedPointer<BasicFrSettings>::create());
    EXPECT_TRUE(device.getSettings().isNull());
    device.replaceSettings({});
    EXPECT_TRUE(device.getSettings().isNull());
    device.replaceSettings(own);
    EXPECT_EQ(device.getSettings(), own);
}

TEST(DeviceSettings, AreHeldByAPointerThatTracksThemAndHaveNoParent)
{
    tracked.clear();
    const Device device;
    EXPECT_EQ(tracked, QList<const QObject*>{device.getSettings().data()});
    EXPECT_EQ(device.getSettings()->parent(), nullptr);
}

} // namespace
