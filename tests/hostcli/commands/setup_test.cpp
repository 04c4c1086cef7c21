#include "hostcli/commands/setup.h"

#include "hostcli/failure.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"

#include <QDir>

#include <gtest/gtest.h>

#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

const QString pluginFile = QStringLiteral(PLUGIN_FOLDER "/libatolonline.so");

// Sets an environment variable while it lives.
class Variable
{
public:
    Variable(const char* variable, const QString& value)
        : name(variable)
        , before(qgetenv(variable))
    {
        qputenv(name, value.toLocal8Bit());
    }
    ~Variable()
    {
        if (before.isNull())
            qunsetenv(name);
        else
            qputenv(name, before);
    }
    Q_DISABLE_COPY_MOVE(Variable)

private:
    const char* name;
    QByteArray before;
};

class ChoiceOfAPlugin : public testing::Test
{
protected:
    [[nodiscard]] QString copy(const QString& name) const
    {
        const QString path = files.path() + u'/' + name;
        EXPECT_TRUE(QFile::copy(pluginFile, path));
        return path;
    }
    [[nodiscard]] static QString messageFor(const QStringList& folders)
    {
        return messageOf<Failure>([&] { std::ignore = pluginOf(CommandLine(), folders); });
    }

    TextFiles files;
};

TEST_F(ChoiceOfAPlugin, FallsOnTheOneThatIsNamed)
{
    CommandLine line;
    line.plugin = pluginFile;
    EXPECT_EQ(pluginOf(line, {}).path, pluginFile);
}

TEST_F(ChoiceOfAPlugin, FallsOnThatOfTheEnvironmentAmongSeveral)
{
    std::ignore = copy(u"liba.so"_s);
    const QString b = copy(u"libb.so"_s);
    const Variable named("FRHOST_PLUGIN", b);
    EXPECT_EQ(pluginOf(CommandLine(), {files.path()}).path, b);
    CommandLine line;
    line.plugin = pluginFile;
    EXPECT_EQ(pluginOf(line, {files.path()}).path, pluginFile);
}

TEST_F(ChoiceOfAPlugin, FallsOnTheOnlyOneThereIs)
{
    const QString only = copy(u"libonly.so"_s);
    EXPECT_EQ(pluginOf(CommandLine(), {files.path()}).path, only);
}

TEST_F(ChoiceOfAPlugin, NeedsHelpWhereThereIsNone)
{
    EXPECT_EQ(messageFor({u"/a"_s, u"/b"_s}),
        u"No fiscal-register plugin in /a, /b. Name one with --plugin FILE."_s);
}

TEST_F(ChoiceOfAPlugin, IsNotGuessedAmongSeveral)
{
    const QString a = copy(u"liba.so"_s);
    const QString b = copy(u"libb.so"_s);
    EXPECT_EQ(messageFor({files.path()}),
        u"Several fiscal-register plugins: %1, %2. Choose one with --plugin FILE or FRHOST_PLUGIN."_s.arg(
            a, b));
}

TEST(FoldersOfAConfiguration, AreTheUsersAndThatOfTheMachine)
{
    const Variable home("HOME", u"/home/till"_s);
    {
        const Variable unset("XDG_CONFIG_HOME", {});
        qunsetenv("XDG_CONFIG_HOME");
        EXPECT_EQ(configFolders(), (QStringList{u"/home/till/.config"_s, u"/etc"_s}));
        qputenv("XDG_CONFIG_HOME", "");
        EXPECT_EQ(configFolders(), (QStringList{u"/home/till/.config"_s, u"/etc"_s})) << "empty is unset";
        qunsetenv("HOME");
        EXPECT_EQ(configFolders(), QStringList{u"/etc"_s});
    }
    const Variable own("XDG_CONFIG_HOME", u"/own"_s);
    EXPECT_EQ(configFolders(), (QStringList{u"/own"_s, u"/etc"_s}));
    const Variable relative("XDG_CONFIG_HOME", u"own"_s);
    EXPECT_EQ(configFolders(), QStringList{u"/etc"_s});
}

TEST(ConfigurationFile, IsTheFirstThatIsNamedOrThere)
{
    const TextFiles files;
    const QString first = files.path() + u"/first"_s;
    const QString second = files.path() + u"/second"_s;
    const auto found = [&](const CommandLine& line = {}) { return configFileOf(line, {first, second}); };
    const Variable unset("FRHOST_CONFIG", {});
    EXPECT_EQ(found(), QString());
    for (const QString& folder : {second, first}) {
        ASSERT_TRUE(QDir().mkpath(folder + u"/frhost"_s));
        QFile file(folder + u"/frhost/register.ini"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(found(), file.fileName());
    }
    const Variable named("FRHOST_CONFIG", u"/nonexistent/a.ini"_s);
    EXPECT_EQ(found(), u"/nonexistent/a.ini"_s);
    CommandLine line;
    line.config = u"/nonexistent/b.ini"_s;
    EXPECT_EQ(found(line), u"/nonexistent/b.ini"_s);
}

TEST(NeededConfiguration, IsNamedWithThePlacesItMayHave)
{
    const Variable none("FRHOST_CONFIG", {});
    const Variable nowhere("XDG_CONFIG_HOME", u"/nonexistent"_s);
    EXPECT_EQ(messageOf<Failure>([] { std::ignore = serviceConfigOf(CommandLine()); }),
        u"There is no configuration. Name one with --config FILE or FRHOST_CONFIG, or create one of: "
        "/nonexistent/frhost/register.ini, /etc/frhost/register.ini."_s);
}

} // namespace
