#include "tests/e2e/support/frhost.h"
#include "tests/e2e/support/shop.h"
#include "tests/examples/ptydevice.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

// A till with the sample register and a journal of its own.
class SerialTill : public testing::Test
{
protected:
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(
            file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        file.write(content);
        return file.fileName();
    }
    [[nodiscard]] QStringList arguments(const QStringList& command) const
    {
        const QString config = file(u"register.ini"_s,
            "[register]\nanswerTime = " + answerTime + "\nport = " + port.toLocal8Bit() + "\n" + further);
        return QStringList{u"--plugin"_s, QStringLiteral(SAMPLE_PLUGIN), u"--config"_s, config, u"--json"_s} +
               command;
    }
    [[nodiscard]] QStringList sale(const QString& id) const
    {
        return arguments({u"sell"_s, u"--journal"_s, folder.filePath(u"journal.db"_s),
            file(u"receipt.json"_s, receiptLine(id))});
    }
    [[nodiscard]] Ran frhost(const QStringList& command) const
    {
        return run(frhostProgram(), arguments(command));
    }
    [[nodiscard]] Ran sell(const QString& id) const { return run(frhostProgram(), sale(id)); }

    PtyDevice device{19200, PtyDevice::AtAnotherSpeed::Garbled};
    QString port = device.path();
    QByteArray further;
    QByteArray answerTime = "500";

private:
    QTemporaryDir folder;
};

TEST_F(SerialTill, DescribesTheSettingsThatTheRegisterHas)
{
    const Ran shown = frhost({u"describe"_s});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    QStringList names;
    for (const QJsonValue& property : shown.lines().value(0).value(u"properties"_s).toArray())
        names << property.toObject().value(u"name"_s).toString();
    EXPECT_EQ(names.join(u' '), u"hardwareClass deviceId speedEnumerate driverOptions port answerTime"_s);
}

TEST_F(SerialTill, ChecksWithoutAskingForTheSettingsOfAService)
{
    const Ran checked = frhost({u"check"_s});
    EXPECT_EQ(checked.exitCode, 0) << checked.err.toStdString();
    EXPECT_EQ(checked.columns({u"connected"_s, u"device"_s}), QStringList{u"true Sample register"_s});
    EXPECT_EQ(device.heard(), QList<QString>{u"5 at 19200"_s});
}

TEST_F(SerialTill, RefusesASettingOfAService)
{
    further = "url = http://127.0.0.1:1/\n";
    const Ran refused = frhost({u"check"_s});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err.toStdString(), HasSubstr("register.ini:4: unknown key"));
}

TEST_F(SerialTill, SellsOnTheWordOfTheDriverAndNeverTwice)
{
    const Ran sold = sell(u"r1"_s);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(
        sold.columns({u"outcome"_s, u"evidence"_s, u"recovered"_s}), QStringList{u"registered driver -"_s});
    EXPECT_EQ(sold.lines().first().value(u"fiscal"_s).toObject().value(u"total"_s).toDouble(), 160);
    EXPECT_EQ(device.heard().last(), u"r1;16000"_s);
    const qsizetype heard = device.heard().size();
    const Ran again = sell(u"r1"_s);
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.columns({u"outcome"_s, u"evidence"_s, u"recovered"_s, u"compared"_s}),
        QStringList{u"registered journal true content"_s});
    EXPECT_EQ(device.heard().size(), heard + 1) << "the handshake";
}

TEST_F(SerialTill, IsWarnedThatNothingNoticesAnIdWithoutAJournal)
{
    const Ran sold = frhost({u"sell"_s, u"--no-journal"_s, file(u"receipt.json"_s, receiptLine(u"r1"_s))});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_THAT(sold.err.toStdString(),
        HasSubstr(
            "Without a journal, nothing notices an id that is used twice: running a file again registers it "
            "again."));
    EXPECT_EQ(sell(u"r2"_s).err, QString()) << "with a journal";
}

TEST_F(SerialTill, AsksTheRegisterForItsLastReceiptWhenAnAnswerWasLost)
{
    device.loseAnswers(true);
    const Ran sold = sell(u"r1"_s);
    EXPECT_EQ(sold.columns({u"outcome"_s, u"evidence"_s}), QStringList{u"incomplete driver"_s});
    EXPECT_EQ(sold.exitCode, 5) << sold.err.toStdString();
    EXPECT_EQ(device.heard().sliced(device.heard().size() - 2), (QList<QString>{u"r1;16000"_s, u"r1"_s}));
}

TEST_F(SerialTill, TellsThatTheRegisterHasTheReceiptWhenItIsInterrupted)
{
    device.loseAnswers(true);
    answerTime = "60000";
    Running running(frhostProgram(), sale(u"r1"_s));
    ASSERT_TRUE(comesTrue([this] { return device.heard().contains(u"r1;16000"_s); }));
    running.signal(SIGINT);
    const Ran interrupted = running.end();
    EXPECT_EQ(interrupted.exitCode, 4);
    EXPECT_EQ(interrupted.columns({u"outcome"_s}), QStringList{u"unknown"_s});
    EXPECT_THAT(interrupted.err.toStdString(),
        HasSubstr(
            "r1 was given to the register, its outcome is unknown; look at the register's last documents."));
}

TEST_F(SerialTill, HasNoCommandsOfAService)
{
    for (const QStringList& command : {QStringList{u"send"_s, file(u"a.json"_s, receiptLine(u"r1"_s))},
             {u"info"_s, u"u-1"_s}, {u"compose"_s, file(u"a.json"_s, receiptLine(u"r1"_s))}}) {
        const Ran refused = frhost(command);
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_THAT(refused.err.toStdString(),
            HasSubstr("the driver does not implement VposFrDriver, the interface of a cloud register"));
    }
    EXPECT_EQ(device.heard(), QList<QString>());
}

TEST_F(SerialTill, SaysThatThePortCannotBeOpened)
{
    port = u"/dev/no-such-port"_s;
    const Ran failed = sell(u"r1"_s);
    EXPECT_EQ(failed.exitCode, 4);
    EXPECT_THAT(failed.err.toStdString(), HasSubstr("No connection to the register: "));
}

} // namespace
