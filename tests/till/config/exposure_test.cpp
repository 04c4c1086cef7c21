#include "tests/support/qtprinters.h"
#include "till/config/exposure.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

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

TEST(Exposure, TellsTheModeAndTheCommandThatMendsIt)
{
    const QString expected = u"/etc/frhost/password holds a password and has the mode %1, so others "
                             u"can read it. Run: chmod 600 /etc/frhost/password"_s;
    EXPECT_EQ(exposureOf(S_IFREG | 0644), expected.arg(u"0644"_s));
    EXPECT_EQ(exposureOf(S_IFREG | 0640), expected.arg(u"0640"_s));
    EXPECT_EQ(exposureOf(S_IFREG | 0604, root), expected.arg(u"0604"_s));
}

TEST(Exposure, KeepsTheFileReadableForWhoHasItFromTheGroup)
{
    EXPECT_TRUE(exposureOf(S_IFREG | 0640, other)
                    .endsWith(u"Run: chown 1001 /etc/frhost/password && chmod 600 /etc/frhost/password"_s));
}

TEST(Exposure, QuotesThePathForAShell)
{
    EXPECT_TRUE(exposureOf(S_IFREG | 0644, till, "it's a till; $(x)")
                    .endsWith(u"Run: chmod 600 'it'\\''s a till; $(x)'"_s));
}

} // namespace
