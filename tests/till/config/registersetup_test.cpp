#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/config/registersetup.h"
#include "till/error.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

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
    Device() { setProperty("unusedProps", QStringList{u"speed"_s}); }

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

using namespace till;

RegisterConfig config(const char* name, const char* value)
{
    RegisterConfig made;
    made.file = u"r.ini"_s;
    made.settings << Setting{QString::fromUtf8(name), QString::fromUtf8(value), 7};
    return made;
}

QString messageFor(const char* name, const char* value)
{
    Device device;
    return messageOf<Error>([&] { configure(device, config(name, value)); });
}

TEST(RegisterSetup, WritesEveryKindOfSetting)
{
    Device device;
    RegisterConfig all;
    all.settings = {{u"url"_s, u"http://x"_s, 1}, {u"password"_s, u"a,\"b\"\\;я"_s, 2},
        {u"interval"_s, u"200"_s, 3}, {u"number"_s, u"19"_s, 4}, {u"beep"_s, u"on"_s, 5}};
    all.driverOptions = {{hw::fr::Option::UseFn, false}};
    configure(device, all);
    EXPECT_EQ(device.url, u"http://x/"_s);
    EXPECT_EQ(device.password, u"a,\"b\"\\;я"_s);
    EXPECT_EQ(device.interval, 200);
    EXPECT_EQ(device.number, 19U);
    EXPECT_TRUE(device.beep);
    EXPECT_EQ(device.options, all.driverOptions);
}

TEST(RegisterSetup, NamesTheNearestKeyForAnUnknownOne)
{
    EXPECT_EQ(messageFor("intervall", "300"), u"r.ini:7: unknown key; did you mean \"interval\"?"_s);
}

TEST(RegisterSetup, RefusesWhatIsNoSetting)
{
    EXPECT_EQ(messageFor("speed", "on"), u"r.ini:7: the register does not use \"speed\""_s);
    for (const char* name : {"hardware", "objectName", "driverOptions"})
        EXPECT_TRUE(messageFor(name, "x").startsWith(u"r.ini:7: unknown key; "_s)) << name;
}

TEST(RegisterSetup, IgnoresACredentialThatTheDeviceHasNoUseFor)
{
    QObject device;
    RegisterConfig given;
    given.settings << Setting{u"password"_s, u"x"_s, 0};
    EXPECT_NO_THROW(configure(device, given));
    given.settings.first().line = 3;
    EXPECT_THROW(configure(device, given), Error) << "in the file";
}

TEST(RegisterSetup, ReportsAValueOfTheWrongType)
{
    EXPECT_EQ(messageFor("interval", "1 s"),
        u"r.ini:7: the value of interval must be of type int. Not below 200."_s);
    EXPECT_EQ(messageFor("number", "-1"), u"r.ini:7: the value of number must be of type uint"_s);
    EXPECT_EQ(messageFor("beep", "да"), u"r.ini:7: the value of beep must be of type bool"_s);
}

TEST(RegisterSetup, ReportsAValueThatTheRegisterSilentlyRefused)
{
    EXPECT_EQ(messageFor("interval", "100"),
        u"r.ini:7: the register refused the value of interval. Not below 200."_s);
    EXPECT_EQ(messageFor("interval", "1000"), QString()) << "the value that it has already";
}

} // namespace

#include "registersetup_test.moc"
