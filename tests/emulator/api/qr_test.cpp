#include "emulator/api/qr.h"

#include <gtest/gtest.h>

using namespace emulator;
using namespace std::chrono_literals;

TEST(QrText, HasTheFormatOfAFiscalReceipt)
{
    const Json payload{{"total", 1030.0}, {"fn_number", "9251440300046840"},
        {"fiscal_document_number", 29414}, {"fiscal_document_attribute", 1250830908}};
    const TimePoint time = std::chrono::sys_days(std::chrono::year(2020) / 1 / 15) + 18h + 10min;
    EXPECT_EQ(
        qrText(payload, time, 1), "t=20200115T2110&s=1030.00&fn=9251440300046840&i=29414&fp=1250830908&n=1");
}
