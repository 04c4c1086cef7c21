#include "host/records/driveroptions.h"

#include <QMetaType>
#include <QPluginLoader>

#include <gtest/gtest.h>

namespace {

TEST(LoadingThePlugin, RegistersTheTypeOfTheDriverOptions)
{
    const char* name = "hw::fr::DriverOptions";
    ASSERT_FALSE(QMetaType::fromName(name).isValid()) << "something else has registered the type";
    QPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    ASSERT_TRUE(loader.load()) << loader.errorString().toStdString();
    const QMetaType type = QMetaType::fromName(name);
    EXPECT_TRUE(type.isRegistered());
    EXPECT_EQ(type, QMetaType::fromType<hw::fr::DriverOptions>());
    EXPECT_EQ(type.sizeOf(), qsizetype(sizeof(hw::fr::DriverOptions)));
}

} // namespace
