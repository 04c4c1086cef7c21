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
    // Runs `frhost check` with variables of the environment.
    [[nodiscard]] Ran check(const QStringList& variables) const
    {
        return run(QStringLiteral("env"),
            variables + QStringList{frhostProgram()} + shop.arguments({QStringLiteral("check")}));
    }
    // The variable that names the folder with the credential.
    [[nodiscard]] QString credential(const QByteArray& password) const
    {
        const QString file = shop.file(QStringLiteral("frhost.password"), password);
        return QStringLiteral("CREDENTIALS_DIRECTORY=") + QFileInfo(file).path();
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

TEST_F(Password, ComesFromTheServiceManagersCredential)
{
    shop.unconfigure(QStringLiteral("password"));
    const Ran without = check({});
    EXPECT_EQ(without.exitCode, 1);
    EXPECT_THAT(without.err.toStdString(), HasSubstr("section [register] lacks \"password\""));
    const Ran with = check({credential(shopPassword)});
    EXPECT_EQ(with.exitCode, 0);
    EXPECT_EQ(with.err, QString());
    EXPECT_EQ(check({credential("wrong")}).exitCode, 1);
}

TEST_F(Password, OfTheConfigurationGoesBeforeTheCredential)
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
    shop.configure(QStringLiteral("url"), QString(address).replace(u"//"_s, u"//user:canary@"_s));
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
    const QString file = shop.file(QStringLiteral("till's password"), QByteArray(shopPassword) + '\n');
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    shop.unconfigure(QStringLiteral("password"));
    shop.configure(QStringLiteral("passwordFile"), QStringLiteral("till's password"));
    const Ran exposed = check({});
    EXPECT_EQ(exposed.exitCode, 0);
    const QString command = exposed.err.section(QStringLiteral(" Run: "), 1).trimmed();
    EXPECT_EQ(exposed.err,
        file + QStringLiteral(" holds a password and has the mode 0640, so others can read it. Run: ") +
            command + u'\n');
    EXPECT_EQ(run(QStringLiteral("sh"), {QStringLiteral("-c"), command}).exitCode, 0);
    EXPECT_EQ(check({}).err, QString()) << "after the command that was shown";
}

} // namespace
