#include "emulator/callbacks/loopbackurl.h"

#include <gmock/gmock.h>

using emulator::loopbackUrl;
using testing::ElementsAre;

TEST(LoopbackUrl, HasAddressesPortAuthorityAndTarget)
{
    const struct
    {
        const char* url;
        std::vector<std::string> addresses;
        int port;
        const char* authority;
        const char* target;
    } rows[] = {
        {"http://127.0.0.1", {"127.0.0.1"}, 80, "127.0.0.1", "/"},
        {"http://127.0.0.1:8080/done?id=1#part", {"127.0.0.1"}, 8080, "127.0.0.1:8080", "/done?id=1"},
        {"http://127.255.1.2:1/", {"127.255.1.2"}, 1, "127.255.1.2:1", "/"},
        {"http://[::1]:65535/a", {"::1"}, 65535, "[::1]:65535", "/a"},
        {"http://[::1]?q", {"::1"}, 80, "[::1]", "/?q"},
        {"HTTP://LocalHost:81/%20", {"127.0.0.1", "::1"}, 81, "LocalHost:81", "/%20"},
    };
    for (const auto& row : rows) {
        const auto url = loopbackUrl(row.url);
        ASSERT_TRUE(url) << row.url;
        EXPECT_EQ(url->addresses, row.addresses) << row.url;
        EXPECT_EQ(url->port, row.port) << row.url;
        EXPECT_EQ(url->authority, row.authority) << row.url;
        EXPECT_EQ(url->target, row.target) << row.url;
    }
}

TEST(LoopbackUrl, IsBounded)
{
    const std::string start = "http://127.0.0.1/";
    EXPECT_TRUE(loopbackUrl(start + std::string(2048 - start.size(), 'a')));
    EXPECT_FALSE(loopbackUrl(start + std::string(2049 - start.size(), 'a')));
}

TEST(LoopbackUrl, IsNothingElse)
{
    for (const char* url : {"", "http://", "http:///done", "127.0.0.1/done", "https://127.0.0.1/",
             "ftp://127.0.0.1/", "http://example.com/", "http://localhost.example.com/",
             "http://127.0.0.1.example.com/", "http://10.0.0.1/", "http://192.168.0.1/", "http://0.0.0.0/",
             "http://169.254.169.254/", "http://128.0.0.1/", "http://[::]/", "http://[::ffff:127.0.0.1]/",
             "http://[fe80::1]/", "http://[::1%lo]/", "http://[::1]x/", "http://::1/", "http://127.1/",
             "http://2130706433/", "http://0x7f000001/", "http://0177.0.0.1/", "http://user@127.0.0.1/",
             "http://127.0.0.1@example.com/", "http://127.0.0.1\\@example.com/", "http://127.0.0.1:0/",
             "http://127.0.0.1:65536/", "http://127.0.0.1:/", "http://127.0.0.1:80x/", "http://127.0.0.1:-1/",
             "http://127.0.0.1:000080/", "http://127.0.0.1/a b", "http://127.0.0.1/\r\nHost: x",
             "http://127.0.0.1/\xD1\x8F", " http://127.0.0.1/"})
        EXPECT_FALSE(loopbackUrl(url)) << url;
}
