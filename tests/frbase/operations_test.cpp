#include "tests/frbase/operations.h"

#include "host/records/frpayment.h"
#include "tests/frbase/scriptedline.h"
#include "tests/support/logcapture.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace Qt::StringLiterals;

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name.toStdString();
}

namespace {

// The base with nothing overridden and its fields visible.
class Defaults : public BasicFrDriver
{
public:
    using BasicFrDriver::BasicFrDriver;

    [[nodiscard]] QString fields() const
    {
        return u"closed %1, default %2, current %3, rates %4, options %5, flag %6, connected %7, number %8"_s
            .arg(portClosed)
            .arg(defaultBaudRate)
            .arg(currentBaudRate)
            .arg(baudRates.size())
            .arg(options)
            .arg(driverFlag)
            .arg(connectedOnce)
            .arg(number);
    }
};

class Default : public testing::TestWithParam<Operation>
{
};

TEST_P(Default, ReturnsAndLogsWhatTheTableSaysAndHasNoOtherEffect)
{
    const Operation& operation = GetParam();
    WillingLine line;
    BasicFrSettings settings;
    Defaults driver(operation.needsPort ? &line : nullptr, u"defaults"_s, &settings);
    driver.setErrorNotificationHandler(
        [](const tr::Tr&, const QString&) { ADD_FAILURE() << "the base calls no handler"; });
    driver.setOfdNotificationHandler(
        [](bool, const tr::Tr&, const QDateTime&) { ADD_FAILURE() << "the base calls no handler"; });
    QString expected = driver.fields();
    EXPECT_EQ(outcomeOf(operation, driver), expectedOf(operation));
    if (operation.name == u"connect")
        expected.replace(u"connected 0"_s, u"connected 1"_s);
    EXPECT_EQ(driver.fields(), expected);
}

INSTANTIATE_TEST_SUITE_P(Of, Default, testing::ValuesIn(allOperations()),
    [](const auto& operation) { return operation.param.name.toStdString(); });

TEST(OperationsTable, HoldsEveryOperationOfTheBinaryContractOnce)
{
    QStringList inContract;
    std::ifstream list(CONTRACT_LIST);
    for (std::string line; std::getline(list, line);) {
        const QString text = QString::fromStdString(line);
        if (text.startsWith(u"slot ") && !text.contains(u'~'))
            inContract << text.section(u' ', 1).section(u'(', 0, 0);
    }
    QStringList names;
    for (const Operation& operation : allOperations())
        names << operation.name;
    inContract.sort();
    names.sort();
    EXPECT_EQ(names, inContract);
    EXPECT_GT(names.size(), 130);
}

TEST(LineSpacing, OfMinusOneIsNotLogged)
{
    BasicFrDriver driver;
    LogCapture log;
    driver.setLineSpacing(-1);
    EXPECT_EQ(log.take(), QStringList());
    driver.setLineSpacing(-2);
    EXPECT_EQ(log.take().size(), 1);
}

TEST(PaymentType, IsItsOwnMainType)
{
    BasicFrDriver driver;
    for (const int type : {-1, 0, 1, 3, 1000})
        EXPECT_EQ(driver.getMainPaymentType(type), type);
}

TEST(PaymentLine, ShowsTwoDecimalsInFixedNotation)
{
    BasicFrDriver driver;
    const LogCapture log;
    for (const double sum : {0.0, 0.005, 1e9, 12345.678})
        driver.checkPay(FrPayment(0, sum));
    EXPECT_EQ(log.lines(),
        (QStringList{u"info: Расчет по чеку: (0) 0.00"_s, u"info: Расчет по чеку: (0) 0.01"_s,
            u"info: Расчет по чеку: (0) 1000000000.00"_s, u"info: Расчет по чеку: (0) 12345.68"_s}));
}

TEST(Number, IsTheOneThatWasSet)
{
    BasicFrDriver driver;
    driver.setNumber(7);
    EXPECT_EQ(driver.getNumber(), 7);
}

} // namespace
