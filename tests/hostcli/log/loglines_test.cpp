#include "hostcli/log/loglines.h"

#include "tests/support/qtprinters.h"

#include <QTimeZone>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

QString answerWith(const char* code)
{
    return u"Ответ от сервера содержит ошибку. Код %1, идентификатор e (текст)"_s.arg(
        QString::fromLatin1(code));
}

TEST(LogLines, OfASaleThatGoesWellAreNoErrors)
{
    for (const char* code : {"10", "11", "30", "33", "34"})
        EXPECT_EQ(filedLevel(QtCriticalMsg, answerWith(code)), QtInfoMsg) << code;
    EXPECT_EQ(filedLevel(QtWarningMsg, u"Срок действия токена истёк. Получаем новый токен"_s), QtInfoMsg);
}

TEST(LogLines, OfARefusalStayErrors)
{
    for (const char* code : {"0", "1", "12", "20", "32", "330", "50", "-34"})
        EXPECT_EQ(filedLevel(QtCriticalMsg, answerWith(code)), QtCriticalMsg) << code;
    EXPECT_EQ(filedLevel(QtCriticalMsg, u"нет ответа: "_s + answerWith("34")), QtCriticalMsg);
    EXPECT_EQ(filedLevel(QtWarningMsg, answerWith("34")), QtWarningMsg);
    EXPECT_EQ(filedLevel(QtDebugMsg, answerWith("34")), QtDebugMsg);
}

TEST(LogLines, HaveDateZoneProcessAndTheLevelAsItIsNamed)
{
    const QDateTime time(QDate(2026, 3, 4), QTime(5, 6, 7, 89), QTimeZone(3 * 3600));
    EXPECT_EQ(logLine(time, 42, Urgency::Error, u"frdriver.a_0"_s, u"text %1"_s),
        u"2026-03-04T05:06:07.089+03:00 [42] error frdriver.a_0: text %1"_s);
    for (const QString& level : logLevels())
        EXPECT_EQ(logLevels().count(level), 1);
    EXPECT_EQ(logLine(time, 1, urgencyOf(QtDebugMsg), u"c"_s, {}).section(u' ', 2, 2), logLevels().at(0));
    EXPECT_EQ(logLine(time, 1, urgencyOf(QtInfoMsg), u"c"_s, {}).section(u' ', 2, 2), logLevels().at(1));
    EXPECT_EQ(logLine(time, 1, urgencyOf(QtWarningMsg), u"c"_s, {}).section(u' ', 2, 2), logLevels().at(2));
    EXPECT_EQ(logLine(time, 1, urgencyOf(QtCriticalMsg), u"c"_s, {}).section(u' ', 2, 2), logLevels().at(3));
}

TEST(LogLines, BelowTheLevelAreLeftOut)
{
    EXPECT_EQ(filterRules(u"debug"_s), QString());
    EXPECT_EQ(filterRules(u"warning"_s), u"frdriver*.debug=false\nfrdriver*.info=false\n"_s);
    EXPECT_EQ(filterRules(u"error"_s), filterRules(u"warning"_s) + u"frdriver*.warning=false\n"_s);
    EXPECT_EQ(filterRules(u"critical"_s), filterRules(u"error"_s)) << "the older name";
}

} // namespace
