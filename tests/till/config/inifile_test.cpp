#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/config/inifile.h"
#include "till/error.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

QString valueOf(const QByteArray& written)
{
    return parseIni("[register]\npassword = " + written, u"r.ini"_s).value(0).value;
}

QString messageFor(const QByteArray& text)
{
    return messageOf<Error>([&] { std::ignore = parseIni(text, u"r.ini"_s); });
}

TEST(IniFile, GivesEveryKeyWithItsSectionAndLine)
{
    const auto entries = parseIni(
        "# first\n\n[register]\r\nurl=http://x/\n; no key\n\n[driverOptions]\n 0x10 = off\n", u"r.ini"_s);
    QStringList lines;
    for (const IniEntry& entry : entries)
        lines << u"%1/%2=%3@%4"_s.arg(entry.section, entry.key, entry.value, QString::number(entry.line));
    EXPECT_EQ(lines, (QStringList{u"register/url=http://x/@4"_s, u"driverOptions/0x10=off@8"_s}));
}

TEST(IniFile, TakesAValueAsItIsWritten)
{
    for (const char* value : {"a,b", "a;b", "a#b", "\"a\"", "'a'", "a\\nb", "a\\", "a=b", "=", "пароль",
             "a b", "[a]", "%20", "@Invalid()", ";", "#"})
        EXPECT_EQ(valueOf(value), QString::fromUtf8(value));
}

TEST(IniFile, DropsTheBlanksAroundAValue)
{
    EXPECT_EQ(valueOf("  a  \t\r\n"), u"a"_s);
    EXPECT_EQ(valueOf(""), QString());
}

TEST(IniFile, NamesFileAndLineOfWhatIsWrong)
{
    EXPECT_EQ(messageFor("[register]\nsecret\n"),
        u"r.ini:2: expected \"key = value\", a [section] or a # comment"_s);
    EXPECT_EQ(messageFor("[register\n"), u"r.ini:1: the section name has no closing \"]\""_s);
    EXPECT_EQ(messageFor("a=1\n"), u"r.ini:1: the key precedes the first [section]"_s);
    EXPECT_EQ(messageFor("[register]\na=1\n\na=2\n"), u"r.ini:4: the key of line 2 is given again"_s);
    EXPECT_EQ(messageFor("[register]\na=\xFF\n"), u"r.ini: the file is not in UTF-8"_s);
}

} // namespace
