#include "host/log/log4qt.h"
#include "tests/support/logcapture.h"

#include <gtest/gtest.h>

namespace {

TEST(Logger, WritesEveryCallAtItsLevelWithItsPlaceholdersFilled)
{
    const LogCapture log;
    const Log4Qt::Logger* logger =
        Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QStringLiteral("a"));
    logger->debug("один");
    logger->debug(QStringLiteral("два"));
    logger->debug("три %1", QStringLiteral("x"));
    logger->info("четыре");
    logger->info("пять %1", 5);
    logger->info("шесть %1", QStringLiteral("x"));
    logger->info("семь %1 (%2)", 7, QStringLiteral("x"));
    logger->warn("восемь");
    logger->warn("девять %1", QStringLiteral("x"));
    logger->error("десять");
    logger->error(QStringLiteral("одиннадцать"));
    logger->error("двенадцать %1", QStringLiteral("x"));
    logger->error("тринадцать %3 %2 %1", 1, QStringLiteral("x"), 3449555941LL);
    const QStringList expected{QStringLiteral("debug: один"), QStringLiteral("debug: два"),
        QStringLiteral("debug: три x"), QStringLiteral("info: четыре"), QStringLiteral("info: пять 5"),
        QStringLiteral("info: шесть x"), QStringLiteral("info: семь 7 (x)"), QStringLiteral("warn: восемь"),
        QStringLiteral("warn: девять x"), QStringLiteral("error: десять"),
        QStringLiteral("error: одиннадцать"), QStringLiteral("error: двенадцать x"),
        QStringLiteral("error: тринадцать 3449555941 x 1")};
    EXPECT_EQ(log.lines(), expected);
}

TEST(Logger, LeavesAPlaceholderInsideAnArgumentAsItIs)
{
    const LogCapture log;
    Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QString())
        ->error("%1, %2 и %3 (100 %)", QStringLiteral("%2"), QStringLiteral("%1%3"), QStringLiteral("конец"));
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("error: %2, %1%3 и конец (100 %)")});
}

TEST(Logger, LeavesAPlaceholderWithoutAnArgumentAsItIs)
{
    const LogCapture log;
    Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QString())->info("%1 %2 %4", QStringLiteral("x"));
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("info: x %2 %4")});
}

TEST(Logger, IsTheQtLoggingCategoryOfItsTwoNames)
{
    const LogCapture log;
    Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QStringLiteral("atolonline_0"))->info("x");
    Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QString())->info("y");
    EXPECT_EQ(
        log.categories(), (QStringList{QStringLiteral("frdriver.atolonline_0"), QStringLiteral("frdriver")}));
}

TEST(Logger, ObeysTheRulesOfItsCategory)
{
    const LogCapture log;
    const Log4Qt::Logger* logger =
        Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QStringLiteral("ruled"));
    QLoggingCategory::setFilterRules(QStringLiteral("frdriver.ruled.info=false"));
    logger->info("скрыто");
    logger->warn("видно");
    QLoggingCategory::setFilterRules(QString());
    logger->info("снова видно");
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("warn: видно"), QStringLiteral("info: снова видно")}));
}

TEST(LogManager, GivesOneLoggerForOnePairOfNames)
{
    const auto logger = [](const char* second) {
        return Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QString::fromUtf8(second));
    };
    EXPECT_EQ(logger("same"), logger("same"));
    EXPECT_NE(logger("same"), logger("other"));
}

} // namespace
