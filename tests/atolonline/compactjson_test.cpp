#include "atolonline/compactjson.h"

#include "tests/support/qtprinters.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <limits>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

using rc::Gen;

QByteArray byQt(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

Gen<QString> textOf(const Gen<char32_t>& character)
{
    return rc::gen::map(rc::gen::container<std::vector<char32_t>>(character), [](const auto& characters) {
        // Empty, and not null: Qt 6.8 crashes on a null key beside one that is not ASCII.
        QString text = u""_s;
        for (const char32_t one : characters)
            text += QStringView(QChar::fromUcs4(one));
        return text;
    });
}

// Characters of one to four bytes, without question marks and lone surrogates, which take the slow path.
Gen<QString> properText()
{
    return textOf(rc::gen::suchThat(
        rc::gen::oneOf(rc::gen::inRange<char32_t>(0, 0x80), rc::gen::inRange<char32_t>(0x80, 0x800),
            rc::gen::inRange<char32_t>(0x800, 0xD800), rc::gen::inRange<char32_t>(0xE000, 0x110000)),
        [](char32_t c) { return c != U'?'; }));
}

Gen<QString> improperText()
{
    return textOf(rc::gen::oneOf(rc::gen::inRange<char32_t>(0xD800, 0xE000), rc::gen::element(U'?', U'a')));
}

// Any bit pattern, including not-a-number and the infinities, and amounts of money.
Gen<double> anyNumber()
{
    const auto bits = rc::gen::map(
        rc::gen::arbitrary<quint64>(), [](quint64 pattern) { return std::bit_cast<double>(pattern); });
    const auto money = rc::gen::map(rc::gen::inRange<qint64>(-4294967295, 4294967295),
        [](qint64 kopecks) { return static_cast<double>(kopecks) / 100; });
    return rc::gen::oneOf(bits, money, rc::gen::arbitrary<double>());
}

Gen<QJsonValue> anyValue(const Gen<QString>& text, int depth);

Gen<QJsonObject> anyObject(const Gen<QString>& text, int depth)
{
    const auto member = rc::gen::pair(text, anyValue(text, depth));
    return rc::gen::map(
        rc::gen::container<std::vector<std::pair<QString, QJsonValue>>>(member), [](const auto& members) {
            QJsonObject object;
            for (const auto& [key, value] : members)
                object.insert(key, value);
            return object;
        });
}

Gen<QJsonValue> anyLeaf(const Gen<QString>& text)
{
    const auto toValue = [](const auto& value) { return QJsonValue(value); };
    return rc::gen::oneOf(rc::gen::map(text, toValue), rc::gen::map(anyNumber(), toValue),
        rc::gen::map(rc::gen::arbitrary<qint64>(), toValue),
        rc::gen::map(rc::gen::arbitrary<bool>(), toValue),
        rc::gen::element(QJsonValue(), QJsonValue(QJsonValue::Undefined)));
}

Gen<QJsonValue> anyValue(const Gen<QString>& text, int depth)
{
    if (depth == 0)
        return anyLeaf(text);
    const auto array = rc::gen::map(
        rc::gen::container<std::vector<QJsonValue>>(anyValue(text, depth - 1)), [](const auto& values) {
            QJsonArray all;
            for (const QJsonValue& value : values)
                all.append(value);
            return QJsonValue(all);
        });
    const auto object = rc::gen::map(
        anyObject(text, depth - 1), [](const QJsonObject& members) { return QJsonValue(members); });
    return rc::gen::oneOf(anyLeaf(text), array, object);
}

void isWrittenAsQtWritesIt(const Gen<QString>& text)
{
    const QJsonObject object = *rc::gen::noShrink(rc::gen::resize(12, anyObject(text, 2)));
    const QByteArray ours = atolonline::compactJson(object);
    if (ours != byQt(object))
        RC_FAIL((ours + " instead of " + byQt(object)).toStdString());
}

TEST(CompactJson, MatchesQJsonDocumentByteForByte)
{
    EXPECT_TRUE(rc::check([] { isWrittenAsQtWritesIt(properText()); }));
}

TEST(CompactJson, MatchesQJsonDocumentForLoneSurrogates)
{
    EXPECT_TRUE(rc::check([] { isWrittenAsQtWritesIt(improperText()); }));
}

TEST(CompactJson, WritesEveryLengthOfTextsArraysAndObjects)
{
    for (const int size : {0, 1, 23, 24, 255, 256, 65535, 65536}) {
        QJsonArray array;
        QJsonObject object;
        for (int i = 0; i < size; ++i) {
            array.append(i);
            if (i < 300)
                object.insert(QString::number(i), -i);
        }
        const QJsonObject whole{{u"text"_s, QString(size, u'я')}, {u"array"_s, array}, {u"object"_s, object}};
        EXPECT_TRUE(atolonline::compactJson(whole) == byQt(whole)) << size;
    }
}

TEST(CompactJson, WritesExtremeNumbers)
{
    using Double = std::numeric_limits<double>;
    using Integer = std::numeric_limits<qint64>;
    const QJsonObject object{{u"numbers"_s,
        QJsonArray{0.0, -0.0, 0.1, 1e15, 1e16, 1e20, 1e21, 1e22, 1e-4, 1e-5, 1e-7, 42949672.95, Double::max(),
            Double::lowest(), Double::min(), Double::denorm_min(), Double::infinity(), Double::quiet_NaN(),
            Integer::max(), Integer::min(), qint64(1) << 53}}};
    EXPECT_EQ(atolonline::compactJson(object), byQt(object));
}

} // namespace
