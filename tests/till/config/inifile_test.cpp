#include "hostcli/failure.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/config/inifile.h"

#include <gtest/gtest.h>

namespace {

using namespace frhost;

QString valueOf(const QByteArray& written)
{
    return parseIni("[register]\npassword = " + written, QStringLiteral("r.ini")).value(0).value;
}

QString messageFor(const QByteArray& text)
{
    return messageOf<Failure>([&] { std::ignore = parseIni(text, QStringLiteral("r.ini")); });
}

TEST(IniFile, GivesEveryKeyWithItsSectionAndLine)
{
    const auto entries =
        parseIni("# first\n\n[register]\r\nurl=http://x/\n; no key\n\n[driverOptions]\n 0x10 = off\n",
            QStringLiteral("r.ini"));
    QStringList lines;
    for (const IniEntry& entry : entries)
        lines << QStringLiteral("%1/%2=%3@%4")
                     .arg(entry.section, entry.key, entry.value, QString::number(entry.line));
    EXPECT_EQ(lines, (QStringList{QStringLiteral("register/url=http://x/@4"),
                         QStringLiteral("driverOptions/0x10=off@8")}));
}

TEST(IniFile, TakesAValueAsItIsWritten)
{
    for (const char* value : {"a,b", "a;b", "a#b", "\"a\"", "'a'", "a\\nb", "a\\", "a=b", "=", "пароль",
             "a b", "[a]", "%20", "@Invalid()", ";", "#"})
        EXPECT_EQ(valueOf(value), QString::fromUtf8(value));
}

TEST(IniFile, DropsTheBlanksAroundAValue)
{
    EXPECT_EQ(valueOf("  a  \t\r\n"), QStringLiteral("a"));
    EXPECT_EQ(valueOf(""), QString());
}

TEST(IniFile, NamesFileAndLineOfWhatIsWrong)
{
    EXPECT_EQ(messageFor("[register]\nsecret\n"),
        QStringLiteral("r.ini:2: expected \"key = value\", a [section] or a # comment"));
    EXPECT_EQ(messageFor("[register\n"), QStringLiteral("r.ini:1: the section name has no closing \"]\""));
    EXPECT_EQ(messageFor("a=1\n"), QStringLiteral("r.ini:1: the key stands before the first [section]"));
    EXPECT_EQ(
        messageFor("[register]\na=1\n\na=2\n"), QStringLiteral("r.ini:4: the key \"a\" is given twice"));
    EXPECT_EQ(messageFor("[register]\na=\xFF\n"), QStringLiteral("r.ini: the file is not in UTF-8"));
}

} // namespace
