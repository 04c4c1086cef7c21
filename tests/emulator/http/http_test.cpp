#include "emulator/http/http.h"

#include <gmock/gmock.h>

using namespace emulator;
using testing::ElementsAre;
using testing::Pair;

TEST(Target, IsSplitAndDecoded)
{
    Request request;
    setTarget(request, "/a%20b/c?login=x%26y&pass=1+2&empty&tail=%zz");
    EXPECT_EQ(request.path, "/a b/c");
    EXPECT_THAT(request.query,
        ElementsAre(Pair("login", "x&y"), Pair("pass", "1 2"), Pair("empty", ""), Pair("tail", "%zz")));
}
