#include "tests/support/qtprinters.h"
#include "till/journal/composedreceipt.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

constexpr auto body =
    R"({"external_id":"r1","receipt":{"items":[{"name":"milk","price":160.0}],"total":160},"timestamp":"01.01.2026 10:00:00"})";

ComposedReceipt read(const QByteArray& text, const char* url = "https://h.example/v4/shop_1/sell")
{
    return readComposed(QUrl(QString::fromLatin1(url)), text);
}

TEST(ComposedReceipt, HasTheIdAndTheRegisterOfItsRequest)
{
    EXPECT_EQ(read(body).id, u"r1"_s);
    EXPECT_EQ(read(body).fiscalRegister, u"https://h.example/v4/shop_1"_s);
    EXPECT_EQ(read(body, "https://u:p@h.example/v4/shop_1/sell?token=t").fiscalRegister,
        u"https://h.example/v4/shop_1"_s);
}

TEST(ComposedReceipt, HasADigestOfItsContentAlone)
{
    const QByteArray digest = read(body).digest;
    EXPECT_EQ(digest.size(), 32);
    EXPECT_EQ(read(QByteArray(body).replace("r1", "r2")).digest, digest);
    EXPECT_EQ(read(QByteArray(body).replace("10:00", "11:00")).digest, digest);
    EXPECT_EQ(read(QByteArray(body).replace("160.0}", "160}")).digest, digest);
    EXPECT_EQ(
        read(R"({"receipt":{"total":160,"items":[{"price":160,"name":"milk"}]},"external_id":"r1"})").digest,
        digest);
}

TEST(ComposedReceipt, HasAnotherDigestForOtherContent)
{
    const QByteArray digest = read(body).digest;
    EXPECT_NE(read(QByteArray(body).replace("milk", "bread")).digest, digest);
    EXPECT_NE(read(QByteArray(body).replace("160.0", "160.1")).digest, digest);
    EXPECT_NE(read(QByteArray(body).replace("\"total\":160", "\"total\":\"160\"")).digest, digest);
    EXPECT_NE(read(QByteArray(body).replace("],", ",{}],")).digest, digest);
}

} // namespace
