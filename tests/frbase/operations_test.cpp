#include "tests/frbase/operations.h"

#include "host/abstractserialdriver.h"
#include "host/records/frpayment.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace Qt::StringLiterals;

void PrintTo(const OperationOutcome& outcome, std::ostream* out)
{
    *out << outcome.value.toStdString() << ", log ";
    PrintTo(outcome.log, out);
}

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name.toStdString();
}

namespace {

class WillingLine : public AbstractSerialDriver
{
public:
    [[nodiscard]] int getPortKind() const override { return 1; }
    void setBaudRate(int /*baudRate*/) override {}
};

/// The base with nothing overridden and its fields to look at.
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

class DefaultWithoutEffect : public Default
{
};

QList<Operation> withoutEffect()
{
    QList<Operation> some = operations();
    some.removeIf([](const Operation& operation) { return operation.name == u"connect"; });
    return some;
}

std::string nameOf(const testing::TestParamInfo<Operation>& test)
{
    return test.param.name.toStdString();
}

TEST_P(Default, GivesThisValueAndLogsThis)
{
    const Operation& operation = GetParam();
    WillingLine line;
    BasicFrSettings settings;
    BasicFrDriver driver(operation.needsPort ? &line : nullptr, u"defaults"_s, &settings);
    EXPECT_EQ(
        outcomeOf(operation, driver), (OperationOutcome{operation.expectedValue, operation.expectedLog}));
}

TEST_P(DefaultWithoutEffect, ChangesNothingInTheDriverAndCallsNoHandler)
{
    const Operation& operation = GetParam();
    WillingLine line;
    BasicFrSettings settings;
    Defaults driver(&line, u"defaults"_s, &settings);
    driver.setErrorNotificationHandler(
        [](const tr::Tr&, const QString&) { ADD_FAILURE() << "the base calls no handler"; });
    driver.setOfdNotificationHandler(
        [](bool, const tr::Tr&, const QDateTime&) { ADD_FAILURE() << "the base calls no handler"; });
    const QString before = driver.fields();
    static_cast<void>(outcomeOf(operation, driver));
    EXPECT_EQ(driver.fields(), before);
}

INSTANTIATE_TEST_SUITE_P(Operation, Default, testing::ValuesIn(operations()), nameOf);
INSTANTIATE_TEST_SUITE_P(Operation, DefaultWithoutEffect, testing::ValuesIn(withoutEffect()), nameOf);

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
    for (const Operation& operation : operations())
        names << operation.name;
    inContract.sort();
    names.sort();
    EXPECT_EQ(names, inContract);
    EXPECT_GT(names.size(), 130);
}

TEST(LineSpacing, MinusOneIsSilent)
{
    Defaults driver;
    LogCapture log;
    driver.setLineSpacing(-1);
    EXPECT_EQ(log.take(), QStringList());
    driver.setLineSpacing(-2);
    EXPECT_EQ(
        log.take(), QStringList{u"debug: Установка межстрочного интервала не поддерживается устройством"_s});
}

TEST(PaymentType, IsItsOwnMainType)
{
    Defaults driver;
    for (const int type : {-1, 0, 1, 3, 1000})
        EXPECT_EQ(driver.getMainPaymentType(type), type);
}

TEST(PaymentLine, ShowsTwoDecimalsInFixedNotation)
{
    Defaults driver;
    const LogCapture log;
    for (const double sum : {0.0, 0.005, 1e9, 12345.678})
        driver.checkPay(FrPayment(0, sum));
    EXPECT_EQ(log.lines(),
        (QStringList{u"info: Расчет по чеку: (0) 0.00"_s, u"info: Расчет по чеку: (0) 0.01"_s,
            u"info: Расчет по чеку: (0) 1000000000.00"_s, u"info: Расчет по чеку: (0) 12345.68"_s}));
}

TEST(Number, IsWhatWasSet)
{
    Defaults driver;
    driver.setNumber(7);
    EXPECT_EQ(driver.getNumber(), 7);
}

} // namespace
