#include "hostcli/queue/open.h"
#include "hostcli/queue/queue.h"
#include "queue/store/intake.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"

#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;
using testing::HasSubstr;

constexpr QueueAction lookers[] = {QueueAction::Results, QueueAction::Wait, QueueAction::List,
    QueueAction::Show, QueueAction::Retry, QueueAction::Hold, QueueAction::Release, QueueAction::Cancel,
    QueueAction::Stats, QueueAction::Audit, QueueAction::Export, QueueAction::Prune};

class Looking : public testing::TestWithParam<QueueAction>
{
protected:
    [[nodiscard]] CommandLine line(QueueAction action, const QString& group = u"shop_1"_s) const
    {
        CommandLine line;
        line.command = Command::Queue;
        line.config = files.file("register.ini", "[register]\nurl = https://service.example/\ngroupCode = " +
                                                     group.toUtf8() + "\n[queue]\nstore = queue.db\n");
        line.queue.action = action;
        line.queue.ids = QStringList{u"r1"_s};
        return line;
    }
    // What keeps the subcommand from its work.
    [[nodiscard]] QString complaint(const QString& group = u"shop_1"_s) const
    {
        Output output;
        return messageOf<till::Error>([&] { std::ignore = queueCommand(line(GetParam(), group), output); });
    }

    TextFiles files;
    QString store = files.path() + u"/queue.db"_s;
};

INSTANTIATE_TEST_SUITE_P(Subcommands, Looking, testing::ValuesIn(lookers));

TEST_P(Looking, CreatesNoQueue)
{
    EXPECT_THAT(complaint().toStdString(), HasSubstr("queue.db: there is no queue here yet"));
    EXPECT_FALSE(QFileInfo::exists(store));
    std::ignore = files.file("queue.db", {});
    EXPECT_THAT(complaint().toStdString(), HasSubstr("queue.db: there is no queue here yet"));
    EXPECT_EQ(QFileInfo(store).size(), 0);
}

TEST_P(Looking, EntersNoRegister)
{
    const QueuePlace place = placeOf(line(QueueAction::Add));
    queue::Store made(place.file, place.address);
    for (int i = 0; i < 2; ++i)
        EXPECT_THAT(complaint(u"shop_2"_s).toStdString(),
            HasSubstr("holds receipts of: https://service.example/shop_1."));
}

TEST(QueueFile, IsWarnedOfWhereOthersCanReadIt)
{
    const TextFiles files;
    const QString file = files.file("queue.db", {});
    const auto warningFor = [&](mode_t mode) {
        EXPECT_EQ(chmod(QFile::encodeName(file).constData(), mode), 0);
        return exposureOf(file);
    };
    EXPECT_EQ(warningFor(0600), QString());
    EXPECT_EQ(warningFor(0620), QString()) << "cannot be read";
    EXPECT_EQ(
        warningFor(0640), file + u" holds the buyers' telephones and e-mail addresses and has the mode "_s +
                              u"0640, so others can read it. Its owner should run: chmod 600 "_s + file);
    EXPECT_FALSE(warningFor(0604).isEmpty());
    EXPECT_EQ(exposureOf(files.path()), QString());
    EXPECT_EQ(exposureOf(files.path() + u"/none"_s), QString());
    EXPECT_EQ(exposureOf(u"postgresql:service=till"_s), QString());
}

TEST_P(Looking, WarnsWhereOthersCanReadTheQueue)
{
    std::ignore = files.file("queue.db", {});
    EXPECT_EQ(chmod(QFile::encodeName(store).constData(), 0644), 0);
    testing::internal::CaptureStderr();
    std::ignore = placeOf(line(GetParam()));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("e-mail addresses and has the mode 0644"));
}

} // namespace
