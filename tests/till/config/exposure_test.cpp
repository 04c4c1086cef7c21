#include "tests/support/qtprinters.h"
#include "till/config/exposure.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using till::changeability;
using till::exposure;

constexpr uid_t root = 0;
constexpr uid_t till = 1000;
constexpr uid_t other = 1001;

QString exposureOf(mode_t mode, uid_t reader = till, const char* path = "/etc/frhost/password")
{
    struct stat status = {};
    status.st_mode = mode;
    status.st_uid = till;
    return exposure(QString::fromUtf8(path), status, reader);
}

TEST(Exposure, IsNoneWhereOnlyTheOwnerReads)
{
    for (const mode_t mode : {0600U, 0400U, 0700U, 0622U})
        EXPECT_EQ(exposureOf(S_IFREG | mode), QString()) << std::oct << mode;
}

TEST(Exposure, IsNoneOfAPipe)
{
    EXPECT_EQ(exposureOf(S_IFIFO | 0644), QString());
}

TEST(Exposure, TellsTheModeAndTheCommandThatFixesIt)
{
    const QString expected = u"/etc/frhost/password holds a password and has the mode %1, so others "
                             u"can read it. Run: chmod 600 /etc/frhost/password"_s;
    EXPECT_EQ(exposureOf(S_IFREG | 0644), expected.arg(u"0644"_s));
    EXPECT_EQ(exposureOf(S_IFREG | 0640), expected.arg(u"0640"_s));
    EXPECT_EQ(exposureOf(S_IFREG | 0604, root), expected.arg(u"0604"_s));
}

TEST(Exposure, AsksNobodyToChangeAFileOfAnotherUser)
{
    EXPECT_EQ(exposureOf(S_IFREG | 0640, other),
        u"/etc/frhost/password holds a password and has the mode 0640, so others can read it. Only its "
        u"owner, user "
        u"1000, or an administrator can change that; you need a file of your own with the mode 0600."_s);
}

TEST(Exposure, QuotesThePathForAShell)
{
    EXPECT_TRUE(exposureOf(S_IFREG | 0644, till, "it's a till; $(x)")
                    .endsWith(u"Run: chmod 600 'it'\\''s a till; $(x)'"_s));
}

QString changeabilityOf(mode_t mode, uid_t reader = till)
{
    struct stat status = {};
    status.st_mode = mode;
    status.st_uid = till;
    return changeability(u"/etc/r.ini"_s, status, reader);
}

TEST(Changeability, IsNoneWhereOnlyTheOwnerWrites)
{
    for (const mode_t mode : {0600U, 0644U, 0755U})
        EXPECT_EQ(changeabilityOf(S_IFREG | mode), QString()) << std::oct << mode;
    EXPECT_EQ(changeabilityOf(S_IFIFO | 0666), QString()) << "a pipe";
}

TEST(Changeability, IsOfGroupAndOfOthers)
{
    for (const mode_t mode : {0620U, 0602U, 0666U})
        EXPECT_TRUE(changeabilityOf(S_IFREG | mode).endsWith(u"Run: chmod go-w /etc/r.ini"_s))
            << std::oct << mode;
    EXPECT_TRUE(changeabilityOf(S_IFREG | 0620, root).endsWith(u"Run: chmod go-w /etc/r.ini"_s));
}

TEST(Changeability, AsksNobodyToChangeAFileOfAnotherUser)
{
    EXPECT_TRUE(
        changeabilityOf(S_IFREG | 0620, other)
            .endsWith(u"Its owner, user 1000, or an administrator should run: chmod go-w /etc/r.ini"_s));
}

TEST(Ownership, MattersWhereTheOwnerIsNeitherRootNorTheReader)
{
    struct stat status = {};
    status.st_mode = S_IFREG | 0644;
    for (const uid_t owner : {root, till}) {
        status.st_uid = owner;
        EXPECT_EQ(::till::ownership(u"r.ini"_s, status, till), QString()) << owner;
    }
    status.st_uid = other;
    EXPECT_EQ(::till::ownership(u"r.ini"_s, status, till),
        u"r.ini belongs to user 1001, who can change it, and with it the address that receives login and "
        u"password. An administrator should run: chown 1000 r.ini"_s);
}

} // namespace
