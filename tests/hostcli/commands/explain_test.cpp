#include "hostcli/commands/commands.h"
#include "tests/support/qtprinters.h"
#include "till/causes/causes.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

QByteArray explained(const QString& cause, bool json = false)
{
    const int descriptor = memfd_create("output", MFD_CLOEXEC);
    Output output(descriptor);
    CommandLine line;
    line.cause = cause;
    line.json = json;
    EXPECT_EQ(explain(line, output), ExitCode::Success);
    QByteArray all(256 * 1024, Qt::Uninitialized);
    all.truncate(pread(descriptor, all.data(), static_cast<std::size_t>(all.size()), 0));
    close(descriptor);
    return all;
}

TEST(Explain, TellsEachReaderOfACodeWhatToDo)
{
    EXPECT_EQ(explained(u"12"_s),
        "12: Неверный логин или пароль\n"
        "  Receipt        refused: not registered\n"
        "  Next step      correct the account, the configuration or the machine, then run\n"
        "                 the same file again\n"
        "  Cashier        The receipt is not registered. Call the administrator: the\n"
        "                 service does not accept login and password.\n"
        "  Administrator  Correct login and password in the configuration, then run the\n"
        "                 same file again.\n"
        "  Programmer     The service does not accept login or password and issues no\n"
        "                 token.\n");
}

TEST(Explain, TakesTheWordsOfTheLog)
{
    EXPECT_TRUE(explained(u"HTTP 200, пустое тело (12 мс, запрос отправлен)"_s).startsWith("тело не JSON, "));
}

TEST(Explain, TakesTheWordsOfAMessage)
{
    EXPECT_TRUE(explained(u"Cannot reach https://s/: nobody accepts connections there. Check url."_s)
                    .startsWith("соединение не установлено: nobody accepts connections there\n"));
}

TEST(Explain, FitsATerminal)
{
    for (const QString& line : QString::fromUtf8(explained({})).split(u'\n'))
        EXPECT_LE(line.size(), 80) << line.toStdString();
}

TEST(Explain, ListsAllCausesAsLinesOfJson)
{
    const QList<QByteArray> lines = explained({}, true).trimmed().split('\n');
    EXPECT_EQ(lines.size(), till::causes().size());
    const QJsonObject first = QJsonDocument::fromJson(lines.constFirst()).object();
    EXPECT_EQ(first.value(u"next"_s).toString(), u"rerun"_s);
    EXPECT_EQ(first.value(u"outcome"_s).toString(), u"unknown"_s);
    EXPECT_FALSE(first.value(u"ru"_s).toObject().value(u"cashier"_s).toString().isEmpty());
}

TEST(Explain, RefusesWhatItDoesNotKnow)
{
    EXPECT_THROW((void)explained(u"2009"_s), Failure);
    EXPECT_THROW((void)explained(u"nonsense"_s), Failure);
}

} // namespace
