#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace Qt::Literals::StringLiterals;
using testing::HasSubstr;
using testing::Not;

class Password : public testing::Test
{
protected:
    // Runs `frhost check` with these environment variables.
    [[nodiscard]] Ran check(const QStringList& variables) const
    {
        return run(u"env"_s, variables + QStringList{frhostProgram()} + shop.arguments({u"check"_s}));
    }
    // The variable that names the folder of the credential.
    [[nodiscard]] QString credential(const QByteArray& password) const
    {
        const QString file = shop.file(u"frhost.password"_s, password);
        return u"CREDENTIALS_DIRECTORY="_s + QFileInfo(file).path();
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

TEST_F(Password, ComesFromTheServiceManagersCredential)
{
    shop.unconfigure(u"password"_s);
    const Ran without = check({});
    EXPECT_EQ(without.exitCode, 1);
    EXPECT_THAT(without.err.toStdString(), HasSubstr("section [register] lacks \"password\""));
    const Ran with = check({credential(shopPassword)});
    EXPECT_EQ(with.exitCode, 0);
    EXPECT_EQ(with.err, QString());
    EXPECT_EQ(check({credential("wrong")}).exitCode, 1);
}

TEST_F(Password, OfTheConfigurationOverridesTheCredential)
{
    const Ran checked = check({credential("wrong")});
    EXPECT_EQ(checked.exitCode, 0);
    EXPECT_THAT(checked.err.toStdString(),
        HasSubstr(
            "register.ini: the password is taken from here, not from the credential frhost.password\n"));
}

TEST_F(Password, InTheAddressOfTheServiceIsNotShown)
{
    const QString address = emulator.url();
    shop.configure(u"url"_s, QString(address).replace(u"//"_s, u"//user:canary@"_s));
    const Ran connected = check({});
    EXPECT_EQ(connected.exitCode, 0);
    EXPECT_THAT(connected.out.toStdString(),
        HasSubstr(QString(address).replace(u"//"_s, u"//user@"_s).toStdString()));
    emulator.stop();
    const Ran stopped = check({});
    EXPECT_EQ(stopped.exitCode, 4);
    EXPECT_THAT(
        (connected.out + connected.err + stopped.out + stopped.err).toStdString(), Not(HasSubstr("canary")));
}

TEST_F(Password, InAFileThatOthersCanReadIsReportedAndUsed)
{
    const QString file = shop.file(u"till's password"_s, QByteArray(shopPassword) + '\n');
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    shop.unconfigure(u"password"_s);
    shop.configure(u"passwordFile"_s, u"till's password"_s);
    const Ran exposed = check({});
    EXPECT_EQ(exposed.exitCode, 0);
    const QString command = exposed.err.section(u" Run: "_s, 1).trimmed();
    EXPECT_EQ(exposed.err,
        file + u" holds a password and has the mode 0640, so others can read it. Run: "_s + command + u'\n');
    EXPECT_EQ(run(u"sh"_s, {u"-c"_s, command}).exitCode, 0);
    EXPECT_EQ(check({}).err, QString()) << "after the command that was shown";
}

} // namespace
