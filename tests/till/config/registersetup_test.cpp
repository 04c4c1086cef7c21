#include "hostcli/failure.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/config/registersetup.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

// A device with one property of each kind.
class Device : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("interval:info", "Not below 200.")
    Q_PROPERTY(QString url READ getUrl WRITE setUrl)
    Q_PROPERTY(QString password MEMBER password)
    Q_PROPERTY(int interval READ getInterval WRITE setInterval)
    Q_PROPERTY(uint number MEMBER number)
    Q_PROPERTY(bool beep MEMBER beep)
    Q_PROPERTY(bool speed MEMBER speed)
    Q_PROPERTY(int hardware READ getHardware)
    Q_PROPERTY(hw::fr::DriverOptions driverOptions WRITE setDriverOptions)
public:
    Device() { setProperty("unusedProps", QStringList{QStringLiteral("speed")}); }

    [[nodiscard]] QString getUrl() const { return url; }
    void setUrl(const QString& value) { url = value + u'/'; }
    [[nodiscard]] int getInterval() const { return interval; }
    void setInterval(int value)
    {
        if (value >= 200)
            interval = value;
    }
    [[nodiscard]] int getHardware() const { return 64; }
    void setDriverOptions(const hw::fr::DriverOptions& value) { options = value; }

    QString url;
    QString password;
    int interval = 1000;
    uint number = 0;
    bool beep = false;
    bool speed = true;
    hw::fr::DriverOptions options;
};

} // namespace

namespace {

using namespace frhost;

RegisterConfig config(const char* name, const char* value)
{
    RegisterConfig made;
    made.file = QStringLiteral("r.ini");
    made.settings << Setting{QString::fromUtf8(name), QString::fromUtf8(value), 7};
    return made;
}

QString messageFor(const char* name, const char* value)
{
    Device device;
    return messageOf<Failure>([&] { configure(device, config(name, value)); });
}

TEST(RegisterSetup, WritesEveryKindOfSetting)
{
    Device device;
    RegisterConfig all;
    all.settings = {{QStringLiteral("url"), QStringLiteral("http://x"), 1},
        {QStringLiteral("password"), QStringLiteral("a,\"b\"\\;я"), 2},
        {QStringLiteral("interval"), QStringLiteral("200"), 3},
        {QStringLiteral("number"), QStringLiteral("19"), 4},
        {QStringLiteral("beep"), QStringLiteral("on"), 5}};
    all.driverOptions = {{hw::fr::Option::UseFn, false}};
    configure(device, all);
    EXPECT_EQ(device.url, QStringLiteral("http://x/"));
    EXPECT_EQ(device.password, QStringLiteral("a,\"b\"\\;я"));
    EXPECT_EQ(device.interval, 200);
    EXPECT_EQ(device.number, 19U);
    EXPECT_TRUE(device.beep);
    EXPECT_EQ(device.options, all.driverOptions);
}

TEST(RegisterSetup, NamesTheNearestKeyForAnUnknownOne)
{
    EXPECT_EQ(messageFor("intervall", "300"),
        QStringLiteral("r.ini:7: unknown key \"intervall\"; did you mean \"interval\"?"));
}

TEST(RegisterSetup, RefusesWhatIsNoSetting)
{
    EXPECT_EQ(messageFor("speed", "on"), QStringLiteral("r.ini:7: the register does not use \"speed\""));
    EXPECT_TRUE(messageFor("hardware", "1").startsWith(QStringLiteral("r.ini:7: unknown key \"hardware\"")));
    EXPECT_TRUE(
        messageFor("objectName", "x").startsWith(QStringLiteral("r.ini:7: unknown key \"objectName\"")));
    EXPECT_TRUE(messageFor("driverOptions", "x")
                    .startsWith(QStringLiteral("r.ini:7: unknown key \"driverOptions\"")));
}

TEST(RegisterSetup, ReportsAValueOfTheWrongType)
{
    EXPECT_EQ(messageFor("interval", "1 s"),
        QStringLiteral("r.ini:7: interval takes a value of type int. Not below 200."));
    EXPECT_EQ(messageFor("number", "-1"), QStringLiteral("r.ini:7: number takes a value of type uint"));
    EXPECT_EQ(messageFor("beep", "да"), QStringLiteral("r.ini:7: beep takes a value of type bool"));
}

TEST(RegisterSetup, ReportsAValueThatTheRegisterSilentlyRefused)
{
    EXPECT_EQ(messageFor("interval", "100"),
        QStringLiteral("r.ini:7: the register refused the value of interval. Not below 200."));
    EXPECT_EQ(messageFor("interval", "1000"), QString()) << "the value that it has already";
}

} // namespace

#include "registersetup_test.moc"
