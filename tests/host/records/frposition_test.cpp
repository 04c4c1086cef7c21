#include "host/records/frposition.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QString described(const QString& name)
{
    FrPosition position;
    position.setName(name);
    return position.toString();
}

QString expected(const QString& name)
{
    return name + u", цена 0.00, количество 0.000, сумма 0.00, скидка 0.00, налог 5"_s;
}

TEST(PositionName, StaysOnOneLineOfTheLog)
{
    EXPECT_EQ(described(u"Молоко\nerror: подделка"_s), expected(u"Молоко error: подделка"_s));
    EXPECT_EQ(described(u"a\r\nb\tc\vd\fe"_s), expected(u"a  b c d e"_s));
    EXPECT_EQ(described(u"a\u0085b\u2028c\u2029d"_s), expected(u"a b c d"_s));
}

TEST(PositionName, HasNoControlCharactersInTheLog)
{
    for (ushort code = 0; code < 0xA0; code = code == 0x1F ? 0x7F : static_cast<ushort>(code + 1)) {
        const QString name = u'a' + QString(QChar(code)) + u'b';
        EXPECT_EQ(described(name), expected(u"a b"_s)) << code;
    }
}

TEST(PositionName, IsOtherwiseLoggedAsItIs)
{
    for (const QString& name : {u"Сыр  \u00a0«Российский», 50 % \U0001F9C0"_s, u"%1 %2"_s, u" "_s, QString(),
             u"\u200b\u0301\u00ad"_s})
        EXPECT_EQ(described(name), expected(name));
}

} // namespace
