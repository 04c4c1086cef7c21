#include "plugin/atolonlinesettings.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

namespace {

TEST(CloudSettings, StartEmptyWithAnIntervalOfOneSecond)
{
    const AtolOnlineSettings settings;
    EXPECT_EQ(settings.getUrl() + settings.getLogin() + settings.getPassword() + settings.getCompanyInn() +
                  settings.getCompanyEmail() + settings.getPaymentAddress() + settings.getGroupCode(),
        QString());
    EXPECT_EQ(settings.getRequestInterval(), 1000);
    EXPECT_EQ(settings.getDeviceId(), 0U);
    EXPECT_TRUE(settings.isSpeedEnumerate());
}

TEST(CloudSettings, AcceptAnyValue)
{
    AtolOnlineSettings settings;
    settings.setRequestInterval(0);
    settings.setPaymentAddress(QString(300, u'x'));
    EXPECT_EQ(settings.getRequestInterval(), 0);
    EXPECT_EQ(settings.getPaymentAddress(), QString(300, u'x'));
}

} // namespace
