#include "tests/frbase/operations.h"

#include "driver/atolonlinefrdriver.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/scriptedtransport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Overridden, or filled by an override, but with the same outcome when called by itself.
const QStringList sameOnTheirOwn{
    u"checkAddPosition"_s, u"checkOption"_s, u"getDateTime"_s, u"getFiscalInfo"_s};

TEST(CloudDriversOperations, DifferFromTheDefaultsExactlyWhereTheTableSaysSo)
{
    QStringList expected;
    QStringList different;
    for (const Operation& operation : allOperations()) {
        // The cloud register has no line.
        if (operation.needsPort && operation.cloud.isEmpty())
            continue;
        ScriptedTransport transport;
        AtolOnlineSettings settings;
        AtolOnlineFRDriver driver(&settings);
        if (outcomeOf(operation, driver) != expectedOf(operation))
            different << operation.name;
        if (!operation.cloud.isEmpty() && !sameOnTheirOwn.contains(operation.name))
            expected << operation.name;
    }
    EXPECT_EQ(different, expected);
}

} // namespace
