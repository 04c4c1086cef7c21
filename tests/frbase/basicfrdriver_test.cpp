#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/frparameter.h"
#include "tests/frbase/scriptedline.h"
#include "tests/support/logcapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;
using hw::fr::Option;

namespace {

std::vector<useconds_t> sleeps;

class Driver : public BasicFrDriver
{
public:
    using BasicFrDriver::BasicFrDriver;

    using BasicFrDriver::baudRates;
    using BasicFrDriver::connectedOnce;
    using BasicFrDriver::currentBaudRate;
    using BasicFrDriver::defaultBaudRate;
    using BasicFrDriver::deviceInfo;
    using BasicFrDriver::driverFlag;
    using BasicFrDriver::errorNotificationHandler;
    using BasicFrDriver::lastFiscalInfo;
    using BasicFrDriver::logger;
    using BasicFrDriver::number;
    using BasicFrDriver::ofdNotificationHandler;
    using BasicFrDriver::options;
    using BasicFrDriver::port;
    using BasicFrDriver::portClosed;
    using BasicFrDriver::settings;
};

void expectInitialFields(const Driver& driver)
{
    EXPECT_TRUE(driver.portClosed);
    EXPECT_EQ(driver.defaultBaudRate, 19200);
    EXPECT_EQ(driver.currentBaudRate, 19200);
    EXPECT_EQ(driver.baudRates, QList<int>());
    EXPECT_EQ(driver.deviceInfo.getModelCode() + driver.deviceInfo.getModelName(), QString());
    EXPECT_EQ(driver.options, 0x1080004U);
    EXPECT_FALSE(driver.driverFlag);
    EXPECT_FALSE(driver.connectedOnce);
    EXPECT_EQ(driver.number, 0);
    EXPECT_FALSE(driver.ofdNotificationHandler);
    EXPECT_FALSE(driver.errorNotificationHandler);
}

TEST(NewDriver, WithoutArgumentsHasNoPortAndSettingsOfItsOwn)
{
    const LogCapture log;
    const Driver driver;
    EXPECT_EQ(driver.port, nullptr);
    ASSERT_NE(driver.settings, nullptr);
    EXPECT_EQ(driver.settings->getDeviceId(), 0U);
    EXPECT_TRUE(driver.settings->isSpeedEnumerate());
    EXPECT_TRUE(driver.settings->getDriverOptions().isEmpty());
    EXPECT_EQ(driver.settings->parent(), nullptr);
    EXPECT_EQ(driver.logger, Log4Qt::LogManager::logger(u"frdriver"_s, QString()));
    EXPECT_EQ(driver.deviceInfo.getLoggerName(), QString());
    expectInitialFields(driver);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST(NewDriver, UsesPortLoggerAndSettings)
{
    WillingLine line;
    BasicFrSettings settings;
    const LogCapture log;
    Driver driver(&line, u"sample_3"_s, &settings);
    EXPECT_EQ(driver.port, &line);
    EXPECT_EQ(driver.settings, &settings);
    EXPECT_EQ(driver.getDeviceSettings(), &settings);
    EXPECT_EQ(driver.deviceInfo.getLoggerName(), u"sample_3"_s);
    expectInitialFields(driver);
    driver.beep();
    EXPECT_EQ(log.categories(), QStringList{u"frdriver.sample_3"_s});
}

TEST(DeletedDriver, LeavesPortAndSettingsAlone)
{
    WillingLine line;
    BasicFrSettings settings;
    delete new Driver(&line, u"sample"_s, &settings);
    EXPECT_EQ(line.getPortKind(), 1);
    EXPECT_EQ(settings.getDeviceId(), 0U);
}

TEST(DeletedDriver, LeavesItsOwnSettingsAliveOnPurpose)
{
    auto driver = std::make_unique<Driver>(nullptr, u"sample"_s, nullptr);
    BasicFrSettings* own = driver->settings;
    ASSERT_NE(own, nullptr);
    bool destroyed = false;
    QObject::connect(own, &QObject::destroyed, [&] { destroyed = true; });
    driver.reset();
    EXPECT_FALSE(destroyed);
    delete own;
    EXPECT_TRUE(destroyed);
}

TEST(Options, OfTheSettingsOverrideTheDrivers)
{
    BasicFrSettings settings;
    for (const Option option : {Option::Bit2, Option::Bit19, Option::Bit24})
        settings.setDriverOption(option, false);
    Driver driver(nullptr, u"sample"_s, &settings);
    EXPECT_EQ(driver.options, 0U);
    driver.setOption(Option::Bit2, true);
    EXPECT_EQ(driver.options, 0U);
}

TEST(Options, OfTheSettingsComeIntoForceWhenTheOptionIsSet)
{
    BasicFrSettings settings;
    Driver driver(nullptr, u"sample"_s, &settings);
    settings.setDriverOption(Option::UseFn, true);
    EXPECT_FALSE(driver.useFN());
    driver.setOption(Option::UseFn, false);
    EXPECT_TRUE(driver.useFN());
}

TEST(Options, OfTheSettingsApplyToExactlyThatOption)
{
    BasicFrSettings settings;
    settings.setDriverOption(Option{0x14}, false);
    Driver driver(nullptr, u"sample"_s, &settings);
    driver.setOption(Option::UseFn, true);
    EXPECT_TRUE(driver.checkOption(Option{0x14}));
    driver.setOption(Option{0x14}, true);
    EXPECT_FALSE(driver.checkOption(Option::Bit2));
    EXPECT_FALSE(driver.checkOption(Option::UseFn));
}

TEST(Options, AreOnWhenEveryBitIs)
{
    Driver driver;
    EXPECT_TRUE(driver.checkOption(Option{0}));
    EXPECT_TRUE(driver.checkOption(Option{0x80004}));
    EXPECT_FALSE(driver.checkOption(Option{0x14}));
    EXPECT_FALSE(driver.checkOption(Option{~quint64{0}}));
    driver.setOption(Option{~quint64{0}}, true);
    EXPECT_TRUE(driver.checkOption(Option{1ULL << 63}));
    driver.setOption(Option{1ULL << 63}, false);
    EXPECT_EQ(driver.options, ~quint64{0} >> 1);
}

TEST(Options, UseFnIsThatOfAnOverriddenCheck)
{
    class Asked : public BasicFrDriver
    {
    public:
        [[nodiscard]] bool checkOption(Option option) const override { return option == Option{0x10}; }
    };
    EXPECT_TRUE(Asked().useFN());
}

class Programmed : public BasicFrDriver
{
public:
    bool legacySetParam(
        unsigned short table, unsigned short row, unsigned short field, const QString& value) override
    {
        calls << u"%1 %2 %3 %4"_s.arg(table).arg(row).arg(field).arg(value);
        return value != u"refused";
    }

    QStringList calls;
};

TEST(Parameters, AreProgrammedInListOrderIn16Bits)
{
    Programmed driver;
    EXPECT_TRUE(driver.setParams({FrParameter(1, 2, 3, u"a"_s), FrParameter(65535, 65536, -1, u"b"_s)}));
    EXPECT_EQ(driver.calls, (QStringList{u"1 2 3 a"_s, u"65535 0 65535 b"_s}));
}

TEST(Parameters, EndAtTheFirstThatIsRefused)
{
    Programmed driver;
    EXPECT_FALSE(driver.setParams(
        {FrParameter(1, 1, 1, u"a"_s), FrParameter(2, 2, 2, u"refused"_s), FrParameter(3, 3, 3, u"b"_s)}));
    EXPECT_EQ(driver.calls, (QStringList{u"1 1 1 a"_s, u"2 2 2 refused"_s}));
}

TEST(Parameters, AreAppliedWhenThereAreNone)
{
    EXPECT_TRUE(BasicFrDriver().setParams({}));
}

TEST(Information, IsACopyOfWhatTheDriverHasStored)
{
    Driver driver;
    driver.deviceInfo.setModel(u"1"_s, u"Модель"_s);
    EXPECT_EQ(driver.getDeviceInfo().getModelName(), u"Модель"_s);
    driver.lastFiscalInfo.fiscalSign = u"3449555941"_s;
    driver.lastFiscalInfo.total = 12.5;
    FiscalInfo info = driver.getFiscalInfo(5, true);
    info.total = 0;
    EXPECT_EQ(driver.getFiscalInfo(0, false).total, 12.5);
    EXPECT_EQ(driver.getFiscalInfo(0, false).fiscalSign, u"3449555941"_s);
}

TEST(Handlers, AreStoredAsCopies)
{
    Driver driver;
    QStringList heard;
    AbstractFrDriver::ErrorHandler error = [&](const tr::Tr& text, const QString& detail) {
        heard << text.ru() + u", "_s + detail;
    };
    AbstractFrDriver::OfdHandler ofd = [&](bool ok, const tr::Tr& text, const QDateTime& since) {
        heard << (ok ? u"ok "_s : u"failed "_s) + text.ru() + since.toString(u" yyyy"_s);
    };
    driver.setErrorNotificationHandler(error);
    driver.setOfdNotificationHandler(ofd);
    error = nullptr;
    ofd = nullptr;
    driver.errorNotificationHandler(tr::Tr(u"Бумага"_s), u"нет"_s);
    driver.ofdNotificationHandler(true, tr::Tr(u"ОФД"_s), QDateTime(QDate(2024, 1, 1), QTime()));
    EXPECT_EQ(heard, (QStringList{u"Бумага, нет"_s, u"ok ОФД 2024"_s}));
}

// Something for a handler to hold: calls the function when its last copy is destroyed.
std::shared_ptr<void> held(const std::function<void()>& whenGone)
{
    return {nullptr, [whenGone](void*) { whenGone(); }};
}

TEST(Handlers, AreDestroyedWhenReplacedAfterTheNewOneIsInPlace)
{
    Driver driver;
    QStringList heard;
    driver.setErrorNotificationHandler([t = held([&] {
        heard << u"error goes"_s;
        driver.errorNotificationHandler({}, {});
    })](const tr::Tr&, const QString&) {});
    driver.setOfdNotificationHandler([t = held([&] {
        heard << u"ofd goes"_s;
        driver.ofdNotificationHandler(true, {}, {});
    })](bool, const tr::Tr&, const QDateTime&) {});
    EXPECT_EQ(heard, QStringList());
    driver.setErrorNotificationHandler([&](const tr::Tr&, const QString&) { heard << u"new error"_s; });
    driver.setOfdNotificationHandler([&](bool, const tr::Tr&, const QDateTime&) { heard << u"new ofd"_s; });
    EXPECT_EQ(heard, (QStringList{u"error goes"_s, u"new error"_s, u"ofd goes"_s, u"new ofd"_s}));
}

TEST(Handlers, AreDestroyedWithTheDriverTheErrorHandlerFirst)
{
    QStringList gone;
    {
        Driver driver;
        driver.setOfdNotificationHandler(
            [t = held([&] { gone << u"ofd"_s; })](bool, const tr::Tr&, const QDateTime&) {});
        driver.setErrorNotificationHandler(
            [t = held([&] { gone << u"error"_s; })](const tr::Tr&, const QString&) {});
    }
    EXPECT_EQ(gone, (QStringList{u"error"_s, u"ofd"_s}));
}

TEST(Sleeping, IsInMicrosecondsAndOnlyForAPositiveTime)
{
    const BasicFrDriver driver;
    sleeps.clear();
    for (const int ms : {1, 200, 4294967, 0, -1, std::numeric_limits<int>::min()})
        driver.msleep(ms);
    EXPECT_EQ(sleeps, (std::vector<useconds_t>{1000, 200000, 4294967000}));
}

TEST(Sleeping, LastsTheWholeTimeHoweverLong)
{
    const BasicFrDriver driver;
    for (const int ms : {4294968, 4294969, 8589935, 86400000, std::numeric_limits<int>::max()}) {
        sleeps.clear();
        driver.msleep(ms);
        EXPECT_EQ(std::accumulate(sleeps.begin(), sleeps.end(), 0ULL), 1000ULL * static_cast<unsigned>(ms));
        EXPECT_EQ(std::count(sleeps.begin(), sleeps.end(), 0), 0) << ms;
    }
}

} // namespace

// Replaces the C library's, so that the test need not wait.
extern "C" int usleep(useconds_t microseconds)
{
    sleeps.push_back(microseconds);
    return 0;
}
