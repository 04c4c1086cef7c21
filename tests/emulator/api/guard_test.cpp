#include "tests/emulator/support/apicalls.h"

TEST_F(ApiCalls, RefusesAForeignHost)
{
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "shop.example").status, 403);
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "127.0.0.1.shop.example:80").status, 403);
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "localhost:1").status, 200);
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "[::1]:1").status, 200);
    EXPECT_EQ(call("POST", "/possystem/v4/getToken", "", "shop.example").status, 403);
}

TEST_F(ApiCalls, RefusesAHostThatIsNotExactlyANameAndAPort)
{
    for (const std::string host :
        {"127.0.0.1:1@shop.example", "127.0.0.1:80:80", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:-1",
            "127.0.0.1:65536", "127.0.0.1:000080", "127.0.0.1/x", "127.0.0.1 shop.example", "localhost.",
            "user@localhost", "[::1]x", "[::1]:", "[::1]1", "x[::1]", "", "127.0.0.1,shop.example"})
        EXPECT_EQ(call("GET", "/_emulator/faults", "", host).status, 403) << host;
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "127.0.0.1:65535").status, 200);
    EXPECT_EQ(call("GET", "/_emulator/faults", "Host: shop.example\r\n", "127.0.0.1").status, 403);
    EXPECT_EQ(call("GET", "/_emulator/faults", "Host: 127.0.0.1\r\n", "127.0.0.1").status, 403);
    const std::string own = "127.0.0.1:" + std::to_string(port());
    EXPECT_EQ(
        call("GET", "/_emulator/faults", "Origin: http://" + own + "\r\nOrigin: http://shop.example\r\n", own)
            .status,
        403);
}

TEST_F(ApiCalls, RefusesAForeignOrigin)
{
    const std::string own = "127.0.0.1:" + std::to_string(port());
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: http://shop.example\r\n", own).status, 403);
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: http://127.0.0.1:1\r\n", own).status, 403);
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: null\r\n", own).status, 403);
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: http://" + own + "\r\n", own).status, 200);
}

TEST_F(ApiCalls, RefusesRequestsOfForeignPages)
{
    const auto status = [this](const std::string& site, const std::string& mode, const std::string& path,
                            const std::string& method = "GET") {
        return call(method, path, "Sec-Fetch-Site: " + site + "\r\nSec-Fetch-Mode: " + mode + "\r\n").status;
    };
    for (const std::string site : {"cross-site", "same-site"}) {
        for (const std::string path : {"/_emulator/events", "/_emulator/documents", "/slip.js", "/",
                 "/possystem/v4/getToken?login=shop&pass=secret"})
            EXPECT_EQ(status(site, "no-cors", path), 403) << site << " " << path;
        EXPECT_EQ(status(site, "navigate", "/"), 200) << site;
        EXPECT_EQ(status(site, "navigate", "/index.html"), 200) << site;
        EXPECT_EQ(status(site, "navigate", "/", "POST"), 403) << site;
        EXPECT_EQ(status(site, "navigate", "/_emulator/documents"), 403) << site;
        EXPECT_EQ(status(site, "navigate", "/possystem/v4/getToken?login=shop&pass=secret"), 403) << site;
    }
    EXPECT_EQ(status("same-origin", "cors", "/_emulator/documents"), 200);
    EXPECT_EQ(status("none", "navigate", "/_emulator/documents"), 200);
}

TEST_F(ApiCalls, AcceptsAnAllowedHost)
{
    options.allowedHosts = {"cloud.test"};
    start();
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "cloud.test:1").status, 200);
}
