#include "till/wire/exchangerecord.h"

#include "host/log/secrets.h"
#include "tests/support/textfile.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using till::ExchangeRecord;

TEST(RecordOfExchanges, KeepsTheLastOnesWithoutSecrets)
{
    hostruntime::secrets::addLogin(u"canary-login"_s);
    hostruntime::secrets::addPersonal(u"canary@buyer.example"_s);
    ExchangeRecord record;
    for (int i = 0; i <= ExchangeRecord::most; ++i)
        record.add("POST", QUrl(u"http://s/v4/%1?token=t"_s.arg(i)), R"({"login":"canary-login"})",
            QVariantMap{{u"text"_s, u"canary@buyer.example"_s}}, i == 1 ? u"broken"_s : QString());
    hostruntime::secrets::clear();
    const QByteArray lines = record.lines();
    EXPECT_EQ(lines.count('\n'), ExchangeRecord::most);
    EXPECT_FALSE(lines.contains("canary")) << lines.constData();
    EXPECT_FALSE(lines.contains("/v4/0")) << "the oldest";
    EXPECT_TRUE(lines.contains(R"("failure":"broken")") && lines.contains(R"("request":"POST /v4/30")"));
    EXPECT_FALSE(lines.contains("token")) << "of the query";
}

TEST(RecordOfExchanges, MovesToAFileThatDoesNotGrowWithoutEnd)
{
    const TextFiles files;
    const QString path = files.path() + u"/e"_s;
    ExchangeRecord record;
    record.add("GET", QUrl(u"http://s/a"_s), {}, {}, u"x"_s);
    EXPECT_TRUE(record.moveTo(path));
    EXPECT_TRUE(record.lines().isEmpty());
    EXPECT_EQ(QFileInfo(path).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
    std::ignore = files.file("e", QByteArray(ExchangeRecord::longestFile + 1, 'x'));
    record.add("GET", QUrl(u"http://s/b"_s), {}, {}, u"x"_s);
    EXPECT_TRUE(record.moveTo(path));
    EXPECT_LT(QFileInfo(path).size(), 1000);
    EXPECT_GT(QFileInfo(path + u".1"_s).size(), ExchangeRecord::longestFile);
    EXPECT_FALSE(record.moveTo(u"/nonexistent/e"_s));
}

} // namespace
