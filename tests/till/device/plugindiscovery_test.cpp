#include "hostcli/failure.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/device/plugindiscovery.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

const QString pluginFolder = QStringLiteral(PLUGIN_FOLDER);
const QString pluginFile = pluginFolder + u"/libatolonline.so"_s;

QString messageFor(const QString& file, const QStringList& folders)
{
    return messageOf<Failure>([&] { std::ignore = choosePlugin(file, folders); });
}

TEST(PluginDiscovery, LooksBesideTheProgramAndWhereItIsInstalled)
{
    EXPECT_EQ(pluginFolders(u"/opt/frhost/bin"_s),
        (QStringList{u"/opt/frhost/plugins"_s, u"/opt/frhost/lib/frhost/plugins"_s}));
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
    EXPECT_EQ(choosePlugin({}, {files.path()}).path, plugins.first().path);
}

TEST(PluginDiscovery, TakesTheFileThatIsNamed)
{
    EXPECT_EQ(choosePlugin(pluginFile, {}).path, pluginFile);
}

TEST(PluginDiscovery, SaysWhyThereIsNoneToTake)
{
    const TextFiles files;
    EXPECT_EQ(messageFor({}, {u"/a"_s, u"/b"_s}),
        u"No fiscal-register plugin in /a, /b. Name one with --plugin FILE."_s);
    EXPECT_EQ(messageFor(u"/a/x.so"_s, {}), u"/a/x.so: there is no such plugin file"_s);
    const QString text = files.file("libnoplugin.so", "not a library");
    EXPECT_EQ(messageFor(text, {}), text + u": this is no fiscal-register plugin"_s);
}

TEST(PluginDiscovery, DoesNotGuessAmongSeveral)
{
    const TextFiles files;
    const QString a = files.path() + u"/liba.so"_s;
    const QString b = files.path() + u"/libb.so"_s;
    ASSERT_TRUE(QFile::copy(pluginFile, a));
    ASSERT_TRUE(QFile::copy(pluginFile, b));
    EXPECT_EQ(messageFor({}, {files.path()}),
        u"Several fiscal-register plugins: %1, %2. Choose one with --plugin FILE."_s.arg(a, b));
}

} // namespace
