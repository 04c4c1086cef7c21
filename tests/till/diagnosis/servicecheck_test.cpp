#include "till/diagnosis/servicecheck.h"

#include "host/transport/peercertificate.h"

#include <QTimeZone>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;
using hostruntime::PeerCertificate;

const QDateTime noon = QDateTime(QDate(2026, 3, 4), QTime(12, 0), QTimeZone::utc()).toUTC();

TEST(Clock, IsComparedWithMoscowsTime)
{
    const ServiceAnswer answer = readAnswer(QVariantMap{{u"timestamp"_s, u"04.03.2026 15:00:30"_s}});
    EXPECT_EQ(judgeClock(answer.time, noon).grade, Grade::Good);
    EXPECT_EQ(judgeClock(answer.time, noon.addSecs(-90)).grade, Grade::Good);
    EXPECT_EQ(judgeClock(answer.time, noon.addSecs(-91)).grade, Grade::Warning);
    EXPECT_TRUE(judgeClock(answer.time, noon.addSecs(3600)).text.contains(u"60 min ahead"_s));
    EXPECT_TRUE(judgeClock(answer.time, noon.addSecs(-3600)).text.contains(u"61 min behind"_s));
    for (const QVariant& none :
        {QVariant(), QVariant(7), QVariant(u"yesterday"_s), QVariant(u"31.02.2026 00:00:00"_s)})
        EXPECT_EQ(judgeClock(readAnswer(QVariantMap{{u"timestamp"_s, none}}).time, noon).grade, Grade::Note);
}

TEST(CertificateOfTheService, IsGoodForAFortnight)
{
    const auto judged = [](qint64 days) {
        return judgeCertificate(PeerCertificate{u"s"_s, u"i"_s, noon.addDays(days)}, noon);
    };
    EXPECT_EQ(judged(14).grade, Grade::Good);
    EXPECT_EQ(judged(13).grade, Grade::Warning);
    EXPECT_TRUE(judged(13).text.contains(u"days left: 13"_s)) << judged(13).text.toStdString();
    EXPECT_EQ(judgeCertificate(std::nullopt, noon).grade, Grade::Note);
    EXPECT_EQ(judgeCertificate(PeerCertificate(), noon).grade, Grade::Note);
}

Finding groupAfter(const QVariantMap& answer)
{
    return judgeGroup(readAnswer(answer), u"g"_s);
}

QVariantMap errorWith(qlonglong code)
{
    return {{u"error"_s, QVariantMap{{u"code"_s, code}, {u"text"_s, u"words"_s}}}};
}

TEST(GroupOfTheRegister, IsKnownWhereADocumentIsNot)
{
    EXPECT_EQ(groupAfter(errorWith(30)).grade, Grade::Good);
    EXPECT_EQ(groupAfter(errorWith(34)).grade, Grade::Good);
    EXPECT_EQ(groupAfter({{u"status"_s, u"done"_s}}).grade, Grade::Good);
    EXPECT_EQ(groupAfter(errorWith(20)).grade, Grade::Fault);
    EXPECT_EQ(groupAfter(errorWith(21)).grade, Grade::Fault);
    EXPECT_EQ(groupAfter(errorWith(50)).grade, Grade::Warning);
    EXPECT_TRUE(groupAfter(errorWith(50)).text.contains(u"code 50: words"_s));
    EXPECT_EQ(groupAfter({}).grade, Grade::Fault);
    EXPECT_EQ(groupAfter({}).problem, Problem::Connection);
    EXPECT_EQ(groupAfter(errorWith(20)).problem, Problem::Setup);
}

} // namespace
