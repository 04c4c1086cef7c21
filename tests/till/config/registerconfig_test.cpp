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
    EXPECT_EQ(messageFor("[register]\npasswordFile = /dev/zero\n"), tooLarge.arg(u"r.ini:2: passwordFile"_s));
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
        u"r.ini:2: unknown key; did you mean \"connectTimeout\"?"_s);
    for (const char* value : {"", "0", "-1", "3600001", "99999999999", "5s"})
        EXPECT_EQ(messageFor(QByteArray("[transport]\nstallTimeout=") + value + '\n'),
            u"r.ini:2: stallTimeout must be 1 to 3600000 milliseconds"_s);
}

TEST_F(RegisterConfiguration, HoldsWhereTheQueueIs)
{
    const QueueConfig queue = read("[queue]\nstore=a/queue.db\nparallel=20\nlease=30\n").queue;
    EXPECT_EQ(queue.store, files.path() + u"/a/queue.db"_s);
    EXPECT_EQ(queue.parallel, 20);
    EXPECT_EQ(queue.lease.count(), 30);
    EXPECT_EQ(read("[queue]\n").queue.parallel, 1);
    EXPECT_EQ(read("[queue]\nstore=postgresql:service=till\n").queue.store, u"postgresql:service=till"_s);
}

TEST_F(RegisterConfiguration, RefusesAQueueThatIsWrong)
{
    EXPECT_EQ(messageFor("[queue]\nlese=30\n"), u"r.ini:2: unknown key; did you mean \"lease\"?"_s);
    for (const char* value :
        {"", "postgresql:", "postgresql:service=", "postgresql:service=till password=secret",
            "postgresql:service=till;password=secret", "postgresql:host=till"})
        EXPECT_EQ(messageFor(QByteArray("[queue]\nstore=") + value + '\n'),
            u"r.ini:2: store must be the path of a file, or postgresql:service=NAME with the name of a "
            "service in the service file of PostgreSQL"_s);
    for (const char* value : {"", "0", "65", "two"})
        EXPECT_EQ(messageFor(QByteArray("[queue]\nparallel=") + value + '\n'),
            u"r.ini:2: parallel must be 1 to 64"_s);
    EXPECT_EQ(messageFor("[queue]\nlease=4\n"), u"r.ini:2: lease must be 5 to 3600"_s);
}

TEST_F(RegisterConfiguration, NamesFileAndLineOfWhatIsWrong)
{
    EXPECT_EQ(messageFor("[regster]\nurl=x\n"), u"r.ini:2: unknown section; did you mean \"[register]\"?"_s);
    EXPECT_EQ(messageFor("[register]\nurl\n").section(u':', 0, 1), u"r.ini:2"_s);
}

TEST_F(RegisterConfiguration, RefusesOptionsThatAreNone)
{
    EXPECT_EQ(messageFor("[driverOptions]\nuseFn=off\n"),
        u"r.ini:2: not an option; write, for example, 0x10 = off"_s);
    EXPECT_EQ(
        messageFor("[driverOptions]\n0=off\n"), u"r.ini:2: not an option; write, for example, 0x10 = off"_s);
    EXPECT_EQ(messageFor("[driverOptions]\n0x10=maybe\n"), u"r.ini:2: an option must be \"on\" or \"off\""_s);
}

TEST_F(RegisterConfiguration, SaysWhichFileCannotBeRead)
{
    EXPECT_EQ(messageOf<Error>([] { std::ignore = readRegisterConfig(u"/nonexistent/r.ini"_s); }),
        u"/nonexistent/r.ini: No such file or directory"_s);
    EXPECT_EQ(
        messageFor("[register]\npasswordFile=none\n"), u"r.ini:2: passwordFile: No such file or directory"_s);
    std::ignore = files.file("empty", "\n");
    EXPECT_EQ(messageFor("[register]\npasswordFile=empty\n"),
        u"r.ini:2: passwordFile: no password in UTF-8 on the first line"_s);
}

// Wherever a password was pasted by mistake.
TEST_F(RegisterConfiguration, NeverQuotesALineThatIsWrong)
{
    for (const char* text : {"canary\n", "canary=\n", "[canary]\nurl=x\n", "[canary\n",
             "[register]\ncanary\n", "[register]\nurl=x\ncanary=1\ncanary=2\n",
             "[register]\npasswordFile=canary\n", "[register]\npassword=x\npasswordFile=canary\n",
             "[transport]\ncanary=1\n", "[transport]\nstallTimeout=canary\n", "[driverOptions]\ncanary=on\n",
             "[driverOptions]\n1=canary\n"}) {
        const QString message = messageFor(text);
        EXPECT_NE(message, QString()) << text;
        EXPECT_FALSE(message.contains(u"canary"_s)) << message.toStdString();
    }
}

TEST_F(RegisterConfiguration, WarnsThatOthersCanChangeItOrReplaceIt)
{
    const auto warned = [&](unsigned mode, unsigned folderMode) {
        const QString config = files.file("r.ini", "[register]\nurl=x\n");
        chmod(config.toLocal8Bit().constData(), mode);
        chmod(files.path().toLocal8Bit().constData(), folderMode);
        return readRegisterConfig(config).warnings.replaceInStrings(files.path(), u"DIR"_s);
    };
    EXPECT_EQ(warned(0644, 0755), QStringList());
    const QStringList changed{
        u"DIR/r.ini has the mode 0660, so others can change it, and with it the address that "
        u"receives login and password. Run: chmod go-w DIR/r.ini"_s};
    EXPECT_EQ(warned(0660, 0755), changed);
    const QStringList replaced{
        u"DIR has the mode 0777, so others can replace DIR/r.ini, and with it the address that "
        u"receives login and password. Run: chmod go-w DIR"_s};
    EXPECT_EQ(warned(0644, 0777), replaced);
    EXPECT_EQ(warned(0644, 01777), QStringList()) << "only the owner replaces a file there";
    EXPECT_EQ(warned(0660, 0777).size(), 2);
}

TEST_F(RegisterConfiguration, WarnsThatOthersCanReplaceWhatALinkLeadsTo)
{
    const TextFiles elsewhere;
    const QString link = elsewhere.path() + u"/link.ini"_s;
    ASSERT_TRUE(QFile::link(files.file("r.ini", "[register]\nurl=x\n"), link));
    EXPECT_EQ(readRegisterConfig(link).warnings, QStringList());
    for (const QString& folder : {files.path(), elsewhere.path()}) {
        chmod(folder.toLocal8Bit().constData(), 0777);
        const QStringList warnings = readRegisterConfig(link).warnings;
        ASSERT_EQ(warnings.size(), 1);
        EXPECT_TRUE(warnings.first().startsWith(folder + u" has the mode 0777"_s))
            << warnings.first().toStdString();
        chmod(folder.toLocal8Bit().constData(), 0700);
    }
}

TEST_F(RegisterConfiguration, KeepsThePasswordsOfAddressesOutOfEveryLogToo)
{
    std::ignore = read("[register]\nurl=https://shop:address%2Dpassword@s/v4/\n"
                       "[transport]\nproxy=http://till:proxy-password@p:1\n");
    EXPECT_EQ(
        secrets::masked(u"address-password proxy-password"_s, secrets::Audience::Developer), u"*** ***"_s);
    secrets::clear();
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
    const QStringList known{u"url"_s, u"login"_s, u"password"_s, u"groupCode"_s, u"inn"_s};
    const QString message =
        messageOf<Error>([&] { requireConnection(read("[register]\nurl=x\nlogin=y\npassword=z\n"), known); });
    EXPECT_TRUE(message.endsWith(u"section [register] lacks \"groupCode\""_s)) << message.toStdString();
    EXPECT_NO_THROW(requireConnection(read("[register]\nurl=x\nlogin=y\npassword=z\ngroupCode=g\n"), known));
    EXPECT_NO_THROW(requireConnection(read("[register]\nport=x\n"), {u"port"_s}))
        << "a device without a service";
}

} // namespace
