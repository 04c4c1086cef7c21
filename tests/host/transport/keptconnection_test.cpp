#include "host/transport/keptconnection.h"

#include <gtest/gtest.h>

#include <array>

#include <sys/socket.h>
#include <unistd.h>

namespace {

using hostruntime::KeptConnection;

class Kept : public testing::Test
{
protected:
    Kept() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0); }
    ~Kept() override
    {
        ::close(ends[0]);
        closeByServer();
    }

    int client() const { return ends[0]; }
    void closeByServer()
    {
        if (ends[1] >= 0)
            ::close(ends[1]);
        ends[1] = -1;
    }

    std::array<int, 2> ends{-1, -1};
    KeptConnection connection;
};

TEST_F(Kept, CarriesNothingBeforeTheFirstExchange)
{
    EXPECT_FALSE(connection.mayCarryPost());
}

TEST_F(Kept, CarriesAPostWhileTheServerKeepsIt)
{
    connection.noteUse({client(), false, true});
    EXPECT_TRUE(connection.mayCarryPost());
    connection.noteUse({client(), true, true});
    EXPECT_TRUE(connection.mayCarryPost());
}

TEST_F(Kept, CarriesNothingOnceTheServerHasClosedIt)
{
    connection.noteUse({client(), false, true});
    closeByServer();
    EXPECT_FALSE(connection.mayCarryPost());
}

TEST_F(Kept, CarriesNothingWhenTheServerSendsSomethingUnasked)
{
    connection.noteUse({client(), false, true});
    ASSERT_EQ(::write(ends[1], "x", 1), 1);
    EXPECT_FALSE(connection.mayCarryPost());
}

TEST_F(Kept, IsNotTrustedAgainAfterTheServerClosedAtOnce)
{
    connection.noteUse({client(), false, true});
    closeByServer();
    EXPECT_FALSE(connection.mayCarryPost());
    std::array<int, 2> later{-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, later.data()), 0);
    connection.noteUse({later[0], false, true});
    EXPECT_FALSE(connection.mayCarryPost());
    ::close(later[0]);
    ::close(later[1]);
}

TEST_F(Kept, IsNotTrustedAgainAfterItWasGoneWhenNeeded)
{
    connection.noteUse({client(), false, true});
    connection.noteUse({client(), false, true});
    EXPECT_FALSE(connection.mayCarryPost());
}

TEST_F(Kept, MayBeClosedByAServerThatAnnouncesIt)
{
    connection.noteUse({-1, false, true});
    EXPECT_FALSE(connection.mayCarryPost());
    connection.noteUse({client(), false, true});
    EXPECT_TRUE(connection.mayCarryPost());
    connection.noteUse({-1, true, true});
    connection.noteUse({client(), false, true});
    EXPECT_TRUE(connection.mayCarryPost()) << "a server may count the requests of a connection";
}

TEST_F(Kept, IsNotTrustedAgainAfterARequestWasLostOnIt)
{
    connection.noteUse({client(), false, true});
    connection.noteUse({-1, true, false});
    connection.noteUse({client(), false, true});
    EXPECT_FALSE(connection.mayCarryPost());
}

} // namespace
