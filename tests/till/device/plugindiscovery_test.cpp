#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/device/plugindiscovery.h"
#include "till/error.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

const QString pluginFolder = QStringLiteral(PLUGIN_FOLDER);
const QString pluginFile = pluginFolder + u"/libatolonline.so"_s;

TEST(PluginDiscovery, LooksBesideTheProgramAndWhereItIsInstalled)
{
    EXPECT_EQ(pluginFolders(u"/opt/frhost/bin"_s),
        (QStringList{u"/opt/frhost/plugins"_s, u"/opt/frhost/" LIBRARY_FOLDER "/frhost/plugins"_s}));
}

TEST(PluginDiscovery, FindsTheFiscalRegisterAmongOtherFiles)
{
    const TextFiles files;
    std::ignore = files.file("libnoplugin.so", "not a library");
    std::ignore = files.file("readme.txt", "text");
    ASSERT_TRUE(QFile::copy(pluginFile, files.path() + u"/libregister.so"_s));
    const auto plugins = findPlugins({u"/nonexistent"_s, files.path()});
    ASSERT_EQ(plugins.size(), 1);
    EXPECT_EQ(plugins.first().path, files.path() + u"/libregister.so"_s);
    EXPECT_EQ(plugins.first().name(), u"atolonline"_s);
}

TEST(PluginDiscovery, AcceptsTheFileOfAFiscalRegister)
{
    EXPECT_EQ(pluginAt(pluginFile).path, pluginFile);
}

TEST(PluginDiscovery, SaysWhyAFileIsNotAPlugin)
{
    const TextFiles files;
    const auto messageFor = [](const QString& file) {
        return messageOf<Error>([&] { std::ignore = pluginAt(file); });
    };
    EXPECT_EQ(messageFor(u"/a/x.so"_s), u"/a/x.so: no such plugin file"_s);
    const QString text = files.file("libnoplugin.so", "not a library");
    EXPECT_EQ(messageFor(text), text + u": not a fiscal-register plugin"_s);
}

} // namespace
