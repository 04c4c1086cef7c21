#include "hostcli/terminal/printable.h"

#include "tests/support/hiddencharacters.h"
#include "tests/support/qtprinters.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

constexpr char32_t lastPoint = 0x10FFFF;

QString text(char32_t point)
{
    return QString::fromStdU32String(std::u32string(1, point));
}

// Half of its characters are hidden ones, the others any.
std::u32string randomText(std::mt19937& random)
{
    std::u32string points;
    for (std::size_t left = random() % 20; left > 0; --left) {
        const auto& [first, last] = hiddenCharacters[random() % hiddenCharacters.size()];
        const bool isHidden = random() % 2 == 0;
        points += static_cast<char32_t>(
            isHidden ? first + random() % (last - first + 1) : random() % (lastPoint + 1));
    }
    return points;
}

// Halves of surrogate pairs would be joined where they are converted.
QString withoutHalves(std::u32string points)
{
    std::erase_if(points, [](char32_t point) { return QChar::isSurrogate(point); });
    return QString::fromStdU32String(points);
}

TEST(Printable, HidesExactlyWhatCannotBeSeen)
{
    for (char32_t point = 0; point <= lastPoint; ++point) {
        const bool isExpected = std::any_of(hiddenCharacters.begin(), hiddenCharacters.end(),
            [&](const auto& range) { return point >= range.first && point <= range.second; });
        ASSERT_EQ(isHidden(point), isExpected) << std::hex << static_cast<unsigned>(point);
    }
}

TEST(Printable, HidesWhatUnicodeCallsAControlOrAFormat)
{
    for (char32_t point = 0; point <= lastPoint; ++point) {
        const QChar::Category category = QChar::category(point);
        if (category == QChar::Other_Control || category == QChar::Other_Format ||
            category == QChar::Other_Surrogate || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph) {
            ASSERT_TRUE(isHidden(point)) << std::hex << static_cast<unsigned>(point);
        } else if (QChar::isLetterOrNumber(point) && isHidden(point)) {
            // Fillers without a glyph.
            ASSERT_TRUE(point == 0x115F || point == 0x1160 || point == 0x3164 || point == 0xFFA0)
                << std::hex << static_cast<unsigned>(point);
        }
    }
}

TEST(Printable, LeavesWhatPeopleWrite)
{
    for (const QString& line :
        {u"Молоко 3,2 % «Домик» — 0,9 л №5 (ё)"_s, u"naïve café €5 ½ ☺ 😀 中文 עברית عربى"_s})
        EXPECT_EQ(printable(line), line);
    EXPECT_EQ(printableLines(u"a\nб\n"_s), u"a\nб\n"_s);
}

TEST(Printable, ReplacesEachHiddenCharacterByOneVisible)
{
    EXPECT_EQ(printable(u"a\x1b[1m\nb\u009b\u202e"_s + text(0xE0041) + QChar(0xD800)),
        u"a\uFFFD[1m\uFFFDb\uFFFD\uFFFD\uFFFD\uFFFD"_s);
    EXPECT_EQ(printableLines(u"a\r\n\u2028b"_s), u"a\uFFFD\n\uFFFDb"_s);
}

TEST(Printable, ShowsNothingHiddenOfAnyText)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        const QString any = QString::fromStdU32String(randomText(random));
        const QString shown = printable(any);
        ASSERT_FALSE(hasHiddenCharacter(shown) || shown.contains(u'\n'));
        ASSERT_EQ(printable(shown), shown);
        ASSERT_EQ(shown.toStdU32String().size(), any.toStdU32String().size());
    }
}

TEST(PrintableJson, IsTheSameValueWithNothingHidden)
{
    std::mt19937 random(8);
    for (int round = 0; round < 5'000; ++round) {
        const QString any = withoutHalves(randomText(random));
        const QJsonDocument document(
            QJsonObject{{any, QJsonArray{any, 1.5, QJsonValue()}}, {u"a\"\\\n\t"_s, any}});
        for (const auto format : {QJsonDocument::Compact, QJsonDocument::Indented}) {
            const QByteArray json = document.toJson(format);
            const QByteArray shown = printableJson(json);
            ASSERT_FALSE(hasHiddenCharacter(QString::fromUtf8(shown))) << shown.toStdString();
            ASSERT_EQ(QJsonDocument::fromJson(shown), document) << shown.toStdString();
        }
    }
}

TEST(PrintableJson, LeavesAVisibleTextAsItIs)
{
    const QByteArray json = "{\n    \"имя\": \"Молоко 😀 \\n\\u001b\"\n}\n";
    EXPECT_EQ(printableJson(json), json);
}

} // namespace
