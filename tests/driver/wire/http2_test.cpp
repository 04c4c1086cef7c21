#include "host/transport/restclient.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/wire/rawserver.h"

#include <QUrl>

#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <array>
#include <atomic>

namespace {

using namespace Qt::Literals::StringLiterals;
using hostruntime::TransportOptions;

// The kinds of HTTP/2 frames that a server needs to refuse a request.
constexpr char headersFrame = 1;
constexpr char resetFrame = 3;
constexpr char settingsFrame = 4;
constexpr char goAwayFrame = 7;
constexpr char refusedStream = 7;

int selectHttp2(
    SSL*, const unsigned char** chosen, unsigned char* length, const unsigned char*, unsigned int, void*)
{
    static constexpr std::array<unsigned char, 2> name{'h', '2'};
    *chosen = name.data();
    *length = name.size();
    return SSL_TLSEXT_ERR_OK;
}

SslContext http2Server()
{
    SslContext context = authority().server();
    SSL_CTX_set_alpn_select_cb(context.get(), &selectHttp2, nullptr);
    return context;
}

std::string frame(char kind, const std::string& stream, const std::string& payload)
{
    return std::string{'\0', '\0', static_cast<char>(payload.size()), kind, '\0'} + stream + payload;
}

struct Frame
{
    char kind = 0;
    std::string stream;
};

Frame readFrame(Peer& peer)
{
    const std::string head = peer.readBytes(9);
    if (head.size() < 9)
        return {};
    const auto byte = [&](std::size_t i) {
        return static_cast<std::size_t>(static_cast<unsigned char>(head[i]));
    };
    std::ignore = peer.readBytes(byte(0) << 16U | byte(1) << 8U | byte(2));
    return {head[3], head.substr(5)};
}

// Both refusals invite the client to send the request again.
class Http2 : public testing::TestWithParam<char>
{
};

TEST_P(Http2, DoesNotRepeatARefusedPost)
{
    std::atomic<int> requests = 0;
    const RawServer server(
        [&](Peer& peer, const std::string& preface) {
            ASSERT_TRUE(preface.starts_with("PRI * HTTP/2.0"));
            ASSERT_EQ(peer.readBytes(6), "SM\r\n\r\n");
            peer.send(frame(settingsFrame, std::string(4, '\0'), {}));
            for (Frame got = readFrame(peer); !got.stream.empty(); got = readFrame(peer)) {
                if (got.kind != headersFrame)
                    continue;
                ++requests;
                const std::string reason{'\0', '\0', '\0', refusedStream};
                if (GetParam() == resetFrame)
                    peer.send(frame(resetFrame, got.stream, reason));
                else
                    peer.send(frame(goAwayFrame, std::string(4, '\0'), std::string(4, '\0') + reason));
            }
            peer.close();
        },
        http2Server());
    TransportOptions options = trusting();
    options.http2 = true;
    options.overall = std::chrono::seconds(5);
    const Defaults defaults(options);
    {
        RestClient client;
        EXPECT_FALSE(client.post(QUrl(QString::fromStdString(server.url())), "{}", {}));
        EXPECT_TRUE(client.wasSent());
    }
    ASSERT_TRUE(server.waitForClosed(server.connections()));
    EXPECT_EQ(requests, 1);
}

INSTANTIATE_TEST_SUITE_P(Refusal, Http2, testing::Values(resetFrame, goAwayFrame),
    [](const auto& run) { return std::string(run.param == resetFrame ? "OfTheStream" : "OfTheConnection"); });

} // namespace
