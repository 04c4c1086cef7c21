#include "host/log/log4qt.h"
#include "tests/support/logcapture.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(Logger, WritesEveryCallAtItsLevelWithPlaceholdersFilled)
{
    const LogCapture log;
    const Log4Qt::Logger* logger = Log4Qt::LogManager::logger(u"frdriver"_s, u"a"_s);
    logger->debug("один");
    logger->debug(u"два"_s);
    logger->debug("три %1", u"x"_s);
    logger->info("четыре");
    logger->info("пять %1", 5);
    logger->info("шесть %1", u"x"_s);
    logger->info("семь %1 (%2)", 7, u"x"_s);
    logger->warn("восемь");
    logger->warn("девять %1", u"x"_s);
    logger->error("десять");
    logger->error(u"одиннадцать"_s);
    logger->error("двенадцать %1", u"x"_s);
    logger->error("тринадцать %3 %2 %1", 1, u"x"_s, 3449555941LL);
    const QStringList expected{u"debug: один"_s, u"debug: два"_s, u"debug: три x"_s, u"info: четыре"_s,
        u"info: пять 5"_s, u"info: шесть x"_s, u"info: семь 7 (x)"_s, u"warn: восемь"_s, u"warn: девять x"_s,
        u"error: десять"_s, u"error: одиннадцать"_s, u"error: двенадцать x"_s,
        u"error: тринадцать 3449555941 x 1"_s};
    EXPECT_EQ(log.lines(), expected);
}

TEST(Logger, LeavesAPlaceholderInsideAnArgumentAsItIs)
{
    const LogCapture log;
    Log4Qt::LogManager::logger(u"frdriver"_s, QString())
        ->error("%1, %2 и %3 (100 %)", u"%2"_s, u"%1%3"_s, u"конец"_s);
    EXPECT_EQ(log.lines(), QStringList{u"error: %2, %1%3 и конец (100 %)"_s});
}

TEST(Logger, LeavesAPlaceholderWithoutAnArgumentAsItIs)
{
    const LogCapture log;
    Log4Qt::LogManager::logger(u"frdriver"_s, QString())->info("%1 %2 %4", u"x"_s);
    EXPECT_EQ(log.lines(), QStringList{u"info: x %2 %4"_s});
}

TEST(Logger, IsTheQtLoggingCategoryOfItsTwoNames)
{
    const LogCapture log;
    Log4Qt::LogManager::logger(u"frdriver"_s, u"atolonline_0"_s)->info("x");
    Log4Qt::LogManager::logger(u"frdriver"_s, QString())->info("y");
    EXPECT_EQ(log.categories(), (QStringList{u"frdriver.atolonline_0"_s, u"frdriver"_s}));
}

TEST(Logger, ObeysTheRulesOfItsCategory)
{
    const LogCapture log;
    const Log4Qt::Logger* logger = Log4Qt::LogManager::logger(u"frdriver"_s, u"ruled"_s);
    QLoggingCategory::setFilterRules(u"frdriver.ruled.info=false"_s);
    logger->info("скрыто");
    logger->warn("видно");
    QLoggingCategory::setFilterRules(QString());
    logger->info("снова видно");
    EXPECT_EQ(log.lines(), (QStringList{u"warn: видно"_s, u"info: снова видно"_s}));
}

TEST(LogManager, ReturnsOneLoggerForOnePairOfNames)
{
    const auto logger = [](const char* second) {
        return Log4Qt::LogManager::logger(u"frdriver"_s, QString::fromUtf8(second));
    };
    EXPECT_EQ(logger("same"), logger("same"));
    EXPECT_NE(logger("same"), logger("other"));
}

} // namespace
