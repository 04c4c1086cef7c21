#include "host/log/secrets.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/config/registerconfig.h"
#include "till/error.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;
using hostruntime::TransportOptions;

namespace secrets = hostruntime::secrets;

class RegisterConfiguration : public testing::Test
{
protected:
    [[nodiscard]] RegisterConfig read(const QByteArray& text) const
    {
        return readRegisterConfig(files.file("r.ini", text));
    }
    // The message without the folder.
    [[nodiscard]] QString messageFor(const QByteArray& text) const
    {
        return messageOf<Error>([&] { std::ignore = read(text); }).remove(files.path() + u'/');
    }

    TextFiles files;
};

TEST_F(RegisterConfiguration, HoldsSettingsWithTheirLinesAndOptions)
{
    const RegisterConfig config =
        read("[register]\nurl = http://x\nrequestInterval = 300\n[driverOptions]\n0x10 = off\n4 = on\n");
    ASSERT_EQ(config.settings.size(), 2);
    EXPECT_EQ(config.settings[1].name, u"requestInterval"_s);
    EXPECT_EQ(config.settings[1].value, u"300"_s);
    EXPECT_EQ(config.settings[1].line, 3);
    const hw::fr::DriverOptions expected{{hw::fr::Option::UseFn, false}, {hw::fr::Option::Bit2, true}};
    EXPECT_EQ(config.driverOptions, expected);
}

TEST_F(RegisterConfiguration, TakesThePasswordFromAFileBesideIt)
{
    std::ignore = files.file("secret", "па роль, \"x\"; \r\nsecond line\n");
    const RegisterConfig config = read("[register]\npasswordFile = secret\n");
    ASSERT_EQ(config.settings.size(), 1);
    EXPECT_EQ(config.settings[0].name, u"password"_s);
    EXPECT_EQ(config.settings[0].value, u"па роль, \"x\"; "_s);
}

// A folder of credentials as the service manager provides it.
class Credentials
{
public:
    explicit Credentials(const QByteArray& password)
    {
        std::ignore = files.file("frhost.password", password);
        qputenv("CREDENTIALS_DIRECTORY", files.path().toLocal8Bit());
    }
    ~Credentials() { qunsetenv("CREDENTIALS_DIRECTORY"); }
    Q_DISABLE_COPY_MOVE(Credentials)

    [[nodiscard]] QString path() const { return files.path(); }

private:
    TextFiles files;
};

TEST_F(RegisterConfiguration, TakesThePasswordFromACredentialWhereItNamesNone)
{
    const Credentials credentials("па роль ");
    const RegisterConfig config = read("[register]\nurl = x\n");
    ASSERT_EQ(config.settings.size(), 2);
    EXPECT_EQ(config.settings[1].name, u"password"_s);
    EXPECT_EQ(config.settings[1].value, u"па роль "_s);
    EXPECT_EQ(config.warnings, QStringList());
}

TEST_F(RegisterConfiguration, GoesBeforeACredentialAndSaysSo)
{
    const Credentials credentials("from-the-credential");
    std::ignore = files.file("secret", "from-the-file\n");
    QFile::setPermissions(files.path() + u"/secret"_s, QFile::ReadOwner);
    for (const char* text : {"[register]\npasswordFile = secret\n", "[register]\npassword = from-here\n"}) {
        const RegisterConfig config = read(text);
        ASSERT_EQ(config.settings.size(), 1);
        EXPECT_NE(config.settings[0].value, u"from-the-credential"_s);
        EXPECT_TRUE(config.warnings.contains(
            config.file + u": the password is taken from here, not from the credential frhost.password"_s));
    }
}

TEST_F(RegisterConfiguration, SaysWhatIsWrongWithACredential)
{
    const Credentials credentials("\n");
    EXPECT_EQ(messageFor("[register]\nurl = x\n"),
        credentials.path() + u"/frhost.password: no password in UTF-8 on the first line"_s);
    QFile::remove(credentials.path() + u"/frhost.password"_s);
    EXPECT_EQ(messageFor("[register]\nurl = x\n"), QString()) << "credentials for other programs";
}

TEST_F(RegisterConfiguration, WarnsOfEveryFileWithAPasswordThatOthersCanRead)
{
    const auto warned = [&](const QByteArray& text, int mode) {
        const QString config = files.file("r.ini", text);
        const QString secret = files.file("secret", "x\n");
        for (const QString& file : {config, secret})
            chmod(file.toLocal8Bit().constData(), static_cast<mode_t>(mode));
        QStringList exposed;
        for (const QString& warning : readRegisterConfig(config).warnings)
            exposed << warning.section(u' ', 0, 0).section(u'/', -1);
        return exposed;
    };
    const QByteArray noPassword = "[register]\nurl=x\n[transport]\nproxy=http://p:1\n";
    const QByteArray ofProxy = "[transport]\nproxy=http://user:password@p:1\n";
    const QByteArray ofAddress = "[register]\nurl=http://user:password@s/v4/\n";
    EXPECT_EQ(warned("[register]\npassword=x\n", 0644), QStringList{u"r.ini"_s});
    EXPECT_EQ(warned("[register]\npassword=x\n", 0600), QStringList());
    EXPECT_EQ(warned("[register]\npasswordFile=secret\n", 0644), QStringList{u"secret"_s});
    EXPECT_EQ(warned("[register]\npasswordFile=secret\n", 0600), QStringList());
    EXPECT_EQ(warned(ofProxy, 0644), QStringList{u"r.ini"_s});
    EXPECT_EQ(warned(ofAddress, 0644), QStringList{u"r.ini"_s});
    EXPECT_EQ(warned(noPassword, 0644), QStringList());
}

TEST_F(RegisterConfiguration, IsNotReadBeyondAMebibyte)
{
    const QString tooLarge = u"%1: larger than 1 MiB"_s;
    EXPECT_EQ(messageFor(QByteArray(1024 * 1024 + 1, '#')), tooLarge.arg(u"r.ini"_s));
    EXPECT_EQ(messageFor("[register]\npasswordFile = /dev/zero\n"), tooLarge.arg(u"/dev/zero"_s));
}

TEST_F(RegisterConfiguration, TakesAFileOfAuthoritiesFromItsOwnFolder)
{
    EXPECT_EQ(read("[transport]\ncaFile=ca.pem\n").transport.caFile, files.path() + u"/ca.pem"_s);
    EXPECT_EQ(read("[transport]\ncaFile=\n").transport.caFile, QString()) << "the system's";
}

TEST_F(RegisterConfiguration, KeepsThePasswordOutOfEveryLogFromThenOn)
{
    const Credentials credentials("from-a-credential");
    std::ignore = files.file("secret", "from-a-file\n");
    for (const char* text : {"[register]\npassword = from-the-configuration\n",
             "[register]\npasswordFile = secret\n", "[register]\n"}) {
        secrets::clear();
        const QString password = read(text).settings[0].value;
        EXPECT_EQ(secrets::masked(u'<' + password + u'>', secrets::Audience::Developer), u"<***>"_s);
    }
    secrets::clear();
}

TEST_F(RegisterConfiguration, HoldsHowTheServiceIsReached)
{
    const TransportOptions options =
        read("[transport]\nconnectTimeout=1\nfirstByteTimeout=3600000\nstallTimeout=3\noverallTimeout=4\n"
             "caFile=/ca.pem\nproxy=http://p:1\nuserAgent=till\n")
            .transport;
    EXPECT_EQ(options.connect.count(), 1);
    EXPECT_EQ(options.firstByte.count(), 3600000);
    EXPECT_EQ(options.stall.count(), 3);
    EXPECT_EQ(options.overall.count(), 4);
    EXPECT_EQ(options.caFile, u"/ca.pem"_s);
    EXPECT_EQ(options.proxy, u"http://p:1"_s);
    EXPECT_EQ(options.userAgent, u"till"_s);
}

TEST_F(RegisterConfiguration, RefusesATransportThatIsWrong)
{
    EXPECT_EQ(messageFor("[transport]\nconectTimeout=1\n"),
        u"r.ini:2: unknown key \"conectTimeout\"; did you mean \"connectTimeout\"?"_s);
    for (const char* value : {"", "0", "-1", "3600001", "99999999999", "5s"})
        EXPECT_EQ(messageFor(QByteArray("[transport]\nstallTimeout=") + value + '\n'),
            u"r.ini:2: stallTimeout must be 1 to 3600000 milliseconds"_s);
}

TEST_F(RegisterConfiguration, NamesFileAndLineOfWhatIsWrong)
{
    EXPECT_EQ(
        messageFor("[regster]\nurl=x\n"), u"r.ini:2: unknown section [regster]; did you mean [register]?"_s);
    EXPECT_EQ(messageFor("[register]\nurl\n").section(u':', 0, 1), u"r.ini:2"_s);
}

TEST_F(RegisterConfiguration, RefusesOptionsThatAreNone)
{
    EXPECT_EQ(messageFor("[driverOptions]\nuseFn=off\n"),
        u"r.ini:2: \"useFn\" is not an option; write, for example, 0x10 = off"_s);
    EXPECT_EQ(messageFor("[driverOptions]\n0=off\n"),
        u"r.ini:2: \"0\" is not an option; write, for example, 0x10 = off"_s);
    EXPECT_EQ(
        messageFor("[driverOptions]\n0x10=maybe\n"), u"r.ini:2: option 0x10 must be \"on\" or \"off\""_s);
}

TEST_F(RegisterConfiguration, SaysWhichFileCannotBeRead)
{
    EXPECT_EQ(messageOf<Error>([] { std::ignore = readRegisterConfig(u"/nonexistent/r.ini"_s); }),
        u"/nonexistent/r.ini: No such file or directory"_s);
    EXPECT_EQ(messageFor("[register]\npasswordFile=none\n"), u"none: No such file or directory"_s);
    std::ignore = files.file("empty", "\n");
    EXPECT_EQ(
        messageFor("[register]\npasswordFile=empty\n"), u"empty: no password in UTF-8 on the first line"_s);
}

TEST_F(RegisterConfiguration, RefusesTwoPasswords)
{
    std::ignore = files.file("secret", "x\n");
    EXPECT_EQ(messageFor("[register]\npassword=x\npasswordFile=secret\n"),
        u"r.ini:3: set password or passwordFile, not both"_s);
    EXPECT_EQ(messageFor("[register]\npasswordFile=secret\npassword=x\n"),
        u"r.ini:3: set password or passwordFile, not both"_s);
}

TEST_F(RegisterConfiguration, SaysWhatIsMissingToReachTheService)
{
    const QString message =
        messageOf<Error>([&] { requireConnection(read("[register]\nurl=x\nlogin=y\npassword=z\n")); });
    EXPECT_TRUE(message.endsWith(u"section [register] lacks \"groupCode\""_s)) << message.toStdString();
    EXPECT_NO_THROW(requireConnection(read("[register]\nurl=x\nlogin=y\npassword=z\ngroupCode=g\n")));
}

} // namespace
