#include "hostcli/failure.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/device/plugindiscovery.h"

#include <gtest/gtest.h>

namespace {

using namespace frhost;

const QString pluginFolder = QStringLiteral(PLUGIN_FOLDER);
const QString pluginFile = pluginFolder + QStringLiteral("/libatolonline.so");

QString messageFor(const QString& file, const QStringList& folders)
{
    return messageOf<Failure>([&] { std::ignore = choosePlugin(file, folders); });
}

TEST(PluginDiscovery, LooksBesideTheProgramAndWhereItIsInstalled)
{
    EXPECT_EQ(pluginFolders(QStringLiteral("/opt/frhost/bin")),
        (QStringList{
            QStringLiteral("/opt/frhost/plugins"), QStringLiteral("/opt/frhost/lib/frhost/plugins")}));
}

TEST(PluginDiscovery, FindsTheFiscalRegisterAmongOtherFiles)
{
    const TextFiles files;
    std::ignore = files.file("libnoplugin.so", "not a library");
    std::ignore = files.file("readme.txt", "text");
    ASSERT_TRUE(QFile::copy(pluginFile, files.path() + QStringLiteral("/libregister.so")));
    const auto plugins = findPlugins({QStringLiteral("/nonexistent"), files.path()});
    ASSERT_EQ(plugins.size(), 1);
    EXPECT_EQ(plugins.first().path, files.path() + QStringLiteral("/libregister.so"));
    EXPECT_EQ(plugins.first().name(), QStringLiteral("atolonline"));
    EXPECT_EQ(choosePlugin({}, {files.path()}).path, plugins.first().path);
}

TEST(PluginDiscovery, TakesTheFileThatIsNamed)
{
    EXPECT_EQ(choosePlugin(pluginFile, {}).path, pluginFile);
}

TEST(PluginDiscovery, SaysWhyThereIsNoneToTake)
{
    const TextFiles files;
    EXPECT_EQ(messageFor({}, {QStringLiteral("/a"), QStringLiteral("/b")}),
        QStringLiteral("No fiscal-register plugin in /a, /b. Name one with --plugin FILE."));
    EXPECT_EQ(
        messageFor(QStringLiteral("/a/x.so"), {}), QStringLiteral("/a/x.so: there is no such plugin file"));
    const QString text = files.file("libnoplugin.so", "not a library");
    EXPECT_EQ(messageFor(text, {}), text + QStringLiteral(": this is no fiscal-register plugin"));
}

TEST(PluginDiscovery, DoesNotGuessAmongSeveral)
{
    const TextFiles files;
    const QString a = files.path() + QStringLiteral("/liba.so");
    const QString b = files.path() + QStringLiteral("/libb.so");
    ASSERT_TRUE(QFile::copy(pluginFile, a));
    ASSERT_TRUE(QFile::copy(pluginFile, b));
    EXPECT_EQ(messageFor({}, {files.path()}),
        QStringLiteral("Several fiscal-register plugins: %1, %2. Choose one with --plugin FILE.").arg(a, b));
}

} // namespace
