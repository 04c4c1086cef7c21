#include "hostcli/terminal/output.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>

namespace {

using frhost::Output;

TEST(Output, WritesAtOnce)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    Output output(ends[1]);
    EXPECT_TRUE(output.write("строка\n"));
    QByteArray read(64, '\0');
    read.truncate(::read(ends[0], read.data(), static_cast<std::size_t>(read.size())));
    EXPECT_EQ(read, QByteArray("строка\n"));
    EXPECT_EQ(output.error(), QString());
    close(ends[0]);
    close(ends[1]);
}

TEST(Output, RemembersTheFirstFailure)
{
    const int full = open("/dev/full", O_WRONLY);
    ASSERT_GE(full, 0);
    Output output(full);
    EXPECT_FALSE(output.write("x"));
    EXPECT_EQ(output.error(), qt_error_string(ENOSPC));
    EXPECT_FALSE(output.write("x"));
    close(full);
}

TEST(Output, ToAReaderThatHasGoneIsAFailure)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    Output output(ends[1]);
    EXPECT_FALSE(output.write("x"));
    EXPECT_EQ(output.error(), qt_error_string(EPIPE));
    close(ends[1]);
    std::signal(SIGPIPE, before);
}

} // namespace
