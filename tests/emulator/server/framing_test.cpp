#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

struct Framing : RunningEmulator
{
    Framing()
    {
        start();
        takeToken();
        EXPECT_EQ(sell(goodReceipt()).status, 200);
    }

    // Sends a POST whose body is a request that deletes every document, and returns all that comes back.
    RawClient::Answer smuggle(const std::string& framing, const std::string& version = "1.1")
    {
        RawClient client(port());
        client.send("POST /_emulator/faults HTTP/" + version + "\r\nHost: 127.0.0.1\r\n" + framing + "\r\n" +
                    "DELETE /_emulator/documents HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        return client.receiveAll();
    }

    std::size_t documents() { return get("/_emulator/documents").json()["documents"].size(); }
};

} // namespace

TEST_F(Framing, RefusesEveryRequestWhoseEndIsDoubtful)
{
    for (const std::string framing : {
             "Transfer-Encoding: xchunked\r\n",
             "Transfer-Encoding: gzip\r\n",
             "Transfer-Encoding: gzip, chunked\r\n",
             "Transfer-Encoding: chunked, chunked\r\n",
             "Transfer-Encoding: chunked;q=1\r\n",
             "Transfer-Encoding: identity\r\n",
             "Transfer-Encoding:\r\n",
             "Transfer-Encoding: x\r\n chunked\r\n",
             "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n",
             "Transfer-Encoding: chunked\r\nTransfer-Encoding: x\r\n",
             "Transfer-Encoding: chunked\r\nContent-Length: 5\r\n",
             "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n",
             "Content-Length: 0\r\nTransfer-Encoding: xchunked\r\n",
             "Content-Length: 0\r\nContent-Length: 0\r\n",
             "Content-Length: 0\r\nContent-Length: 5\r\n",
             "Content-Length: 0, 0\r\n",
             "Content-Length: +0\r\n",
             "Content-Length: -1\r\n",
             "Content-Length: 0x0\r\n",
             "Content-Length:\r\n",
             "Content-Length : 0\r\n",
         }) {
        const auto answer = smuggle(framing);
        EXPECT_EQ(answer.status, 400) << framing;
        EXPECT_EQ(answer.end, RawClient::End::Closed) << framing;
        EXPECT_THAT(answer.head, HasSubstr("Connection: close\r\n")) << framing;
        EXPECT_THAT(answer.body, testing::Not(HasSubstr("HTTP/1.1"))) << framing;
        EXPECT_EQ(documents(), 1u) << framing;
    }
}

TEST_F(Framing, KnowsNoTransferCodingInHttp10)
{
    const auto answer =
        smuggle("Connection: keep-alive\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n[]\r\n0\r\n", "1.0");
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.end, RawClient::End::Closed);
    EXPECT_EQ(documents(), 1u);
}

TEST_F(Framing, ReadsAChunkedBody)
{
    const std::string body = goodReceipt("chunked").dump();
    std::string chunks;
    for (std::size_t at = 0; at < body.size(); at += 15) {
        const std::string piece = body.substr(at, 15);
        chunks += (piece.size() == 15 ? "f" : "0" + std::string(1, "0123456789abcde"[piece.size()])) +
                  ";name=value\r\n" + piece + "\r\n";
    }
    RawClient client(port());
    client.send("POST /possystem/v4/group-1/sell HTTP/1.1\r\nHost: 127.0.0.1\r\n" + tokenHeader() +
                "Content-Type: application/json; charset=utf-8\r\nTransfer-Encoding: Chunked\r\n\r\n" +
                chunks + "0\r\n\r\n" + getRequest("/_emulator/documents"));
    EXPECT_EQ(client.receive().status, 200);
    EXPECT_EQ(client.receive().json()["documents"].size(), 2u);
}

// What surrounds the chunks is bounded as well as what is in them.
TEST_F(Framing, RefusesEndlessChunkExtensions)
{
    options.limits.bodyBytes = 20'000;
    start();
    const std::string head = "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nTransfer-Encoding: chunked\r\n\r\n";
    RawClient one(port());
    one.send(head + "1;" + std::string(150'000, 'x'));
    EXPECT_EQ(one.receive().status, 413);
    RawClient many(port());
    many.send(head);
    std::string chunks;
    for (int i = 0; i < 20; ++i)
        chunks += "1;" + std::string(8'000, 'x') + "\r\ny\r\n";
    many.send(chunks);
    EXPECT_EQ(many.receive().status, 413);
}
