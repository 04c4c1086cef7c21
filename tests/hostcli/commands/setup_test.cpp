#include "hostcli/commands/setup.h"

#include "hostcli/failure.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

const QString pluginFile = QStringLiteral(PLUGIN_FOLDER "/libatolonline.so");

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
        u"Several fiscal-register plugins: %1, %2. Choose one with --plugin FILE."_s.arg(a, b));
}

TEST(ServiceConfiguration, HasToBeNamed)
{
    EXPECT_EQ(messageOf<Failure>([] { std::ignore = serviceConfigOf(CommandLine()); }),
        u"This command talks to the service: name a configuration with --config FILE."_s);
}

} // namespace
