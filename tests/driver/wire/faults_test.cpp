#include "tests/driver/wire/wireclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/wire/rawserver.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <zlib.h>

#include <atomic>
#include <functional>
#include <sstream>
#include <tuple>
#include <type_traits>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using hostruntime::TransportOptions;

constexpr std::size_t mebibyte = 1024 * 1024;

// What the server does once it has sent its bytes.
enum class Then
{
    Keep,
    Close,
    Reset,
    Hang
};

// The limit that a row runs into, which is therefore short; the others keep their long defaults.
enum class Short
{
    None,
    FirstByte,
    Stall,
    Overall
};

// What goes over the wire. Made by a function where it is long, because every row of the table runs in a
// process of its own.
struct Bytes
{
    Bytes(const char* text)
        : make([text] { return std::string(text); })
    {
    }
    Bytes(std::string text)
        : make([text = std::move(text)] { return text; })
    {
    }
    template <typename Maker>
    requires std::is_invocable_r_v<std::string, Maker> Bytes(Maker maker)
        : make(std::move(maker))
    {
    }

    std::function<std::string()> make;
};

struct Fault
{
    std::string name;
    // Sent one by one, a tenth of a second apart, if the overall limit is the short one.
    Bytes bytes;
    Then then = Then::Keep;
    // How the cause in the log begins; empty for a reply that reaches the caller.
    std::string cause = {};
    Short limit = Short::None;
    // The library repeats a GET on a kept connection that ended before the first byte.
    bool repeatsGet = false;
};

std::string answer(int status, const std::string& body, const std::string& headers = {})
{
    return "HTTP/1.1 " + std::to_string(status) + " Status\r\n" + headers +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string times(std::size_t count, const std::string& text)
{
    std::string all;
    all.reserve(count * text.size());
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// A reply that satisfies every operation, with the given members added.
std::string reply(const std::string& members = {})
{
    return R"({"token":")" + std::string(canaryToken) + R"(","uuid":"U","status":"done")" + members + "}";
}

std::string gzip(const std::string& text)
{
    z_stream stream{};
    constexpr int gzipFormat = 15 + 16;
    deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, text.size()) + 64, '\0');
    std::string input = text;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

std::string chunk(const std::string& text)
{
    std::ostringstream size;
    size << std::hex << text.size();
    return size.str() + "\r\n" + text + "\r\n";
}

const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
const std::string whole = answer(200, reply());
const std::string half = whole.substr(0, whole.size() - 20);
const std::string html = "<html><body><h1>Bad gateway</h1></body></html>";
const std::string notJson = "тело не JSON: ";
const std::string notObject = "тело не объект или пустое";
const std::string zipped = "Content-Encoding: gzip\r\n";

const std::vector<Fault>& faults()
{
    static const std::vector<Fault> table{
        {"accepts and never answers", "", Then::Hang, "истекло время на начало ответа (предел 1000 мс)",
            Short::FirstByte},
        {"answers half a status line and stops", "HTTP/1.1 2", Then::Hang,
            "истекло время на начало ответа (предел 1000 мс)", Short::FirstByte},
        {"answers headers and stops", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n", Then::Hang,
            "истекло время на продолжение ответа (предел 1000 мс)", Short::Stall},
        {"answers half a body and stops", half, Then::Hang,
            "истекло время на продолжение ответа (предел 1000 мс)", Short::Stall},
        {"drips its headers", whole, Then::Hang, "истекло время на обмен в целом (предел 1500 мс)",
            Short::Overall},
        {"drips its body", "HTTP/1.1 200 OK\r\n\r\n" + reply(), Then::Hang,
            "истекло время на обмен в целом (предел 1500 мс)", Short::Overall},

        {"closes before the answer", "", Then::Close, "сервер закрыл соединение без ответа", Short::None,
            true},
        {"closes in the status line", "HTTP/1.1 2", Then::Close, "сервер закрыл соединение без ответа",
            Short::None, true},
        {"closes in the headers", "HTTP/1.1 200 OK\r\nContent-Le", Then::Close, "ответ оборван в заголовках"},
        {"closes between the headers", "HTTP/1.1 200 OK\r\nX: y\r\n", Then::Close,
            "ответ оборван в заголовках"},
        {"closes in the body", half, Then::Close, "ответ оборван"},
        {"closes after the answer", whole, Then::Close},
        {"resets before the answer", "", Then::Reset, "соединение оборвано", Short::None, true},
        {"resets in the headers", "HTTP/1.1 200 OK\r\nContent-Le", Then::Reset, "соединение оборвано"},
        {"resets in the body", half, Then::Reset, "соединение оборвано"},

        {"a chunked answer", chunked + "9\r\n{\"uuid\":\"\r\n3;x=y\r\nU\",\r\n" + chunk(reply().substr(1)) +
                                 "0\r\nTrailer: x\r\n\r\n"},
        {"a chunk cut off", chunked + "50\r\n" + reply().substr(0, 30), Then::Close, "ответ оборван"},
        {"no last chunk", chunked + "4\r\n{\"to\r\n", Then::Close, "ответ оборван"},
        {"a chunk without a size", chunked + "zz\r\n", Then::Close, "соединение оборвано"},
        {"Content-Length too long", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + reply(), Then::Close,
            "ответ оборван"},
        {"Content-Length too short", "HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n" + reply(), Then::Close,
            "HTTP 200, " + notJson},
        {"neither length nor end but closing", "HTTP/1.1 200 OK\r\n\r\n" + reply(), Then::Close},
        {"not HTTP", "220 mail.example ESMTP\r\n\r\n", Then::Close, "ответ не HTTP"},
        {"100 Continue and the answer", "HTTP/1.1 100 Continue\r\n\r\n" + whole},
        {"100 Continue and nothing", "HTTP/1.1 100 Continue\r\n\r\n", Then::Close,
            "сервер закрыл соединение без ответа"},
        {"100 Continue without end", [] { return times(mebibyte / 25, "HTTP/1.1 100 Continue\r\n\r\n"); },
            Then::Close, "заголовки ответа больше 64 КиБ"},
        {"a header of 1 MiB",
            [] { return "HTTP/1.1 200 OK\r\nX: " + std::string(mebibyte, 'x') + "\r\n\r\n"; }, Then::Close,
            "заголовок ответа слишком велик"},
        {"1 MiB of headers",
            [] {
                return "HTTP/1.1 200 OK\r\n" + times(mebibyte / 64, "X: " + std::string(59, 'x') + "\r\n") +
                       "\r\n";
            },
            Then::Close, "заголовки ответа больше 64 КиБ"},
        // libcurl 8 counts the lines too, and its limit is the lower one if they are short.
        {"1 MiB of short headers",
            [] { return "HTTP/1.1 200 OK\r\n" + times(mebibyte / 8, "X: 1234\r\n") + "\r\n"; }, Then::Close,
            "заголов"},

        {"204", "HTTP/1.1 204 No Content\r\n\r\n", Then::Keep, "HTTP 204, пустое тело"},
        {"an empty 200", answer(200, ""), Then::Keep, "HTTP 200, пустое тело"},
        {"301 with HTML", answer(301, html, "Location: http://127.0.0.1:1/\r\n"), Then::Keep,
            "HTTP 301, " + notJson},
        {"401 with HTML", answer(401, html, "WWW-Authenticate: Basic\r\n"), Then::Keep,
            "HTTP 401, " + notJson},
        {"404 with HTML", answer(404, html), Then::Keep, "HTTP 404, " + notJson},
        {"500 with HTML", answer(500, html), Then::Keep, "HTTP 500, " + notJson},
        {"502 with HTML", answer(502, html), Then::Keep, "HTTP 502, " + notJson},
        {"500 with a reply", answer(500, reply())},

        {"not JSON", answer(200, "hello"), Then::Keep, "HTTP 200, " + notJson},
        {"an array", answer(200, R"(["token"])"), Then::Keep, "HTTP 200, " + notObject},
        {"a text", answer(200, R"("token")"), Then::Keep, "HTTP 200, " + notJson},
        {"null", answer(200, "null"), Then::Keep, "HTTP 200, " + notJson},
        {"an empty object", answer(200, "{}"), Then::Keep, "HTTP 200, " + notObject},
        {"5 MB of JSON", [] { return answer(200, reply(R"(,"a":[0)" + times(2'500'000, ",1") + "]")); }},
        {"100000 members", [] { return answer(200, reply(times(100'000, R"(,"k":"v")"))); }},
        {"100000 levels of arrays", [] { return answer(200, times(100'000, "[")); }, Then::Keep,
            "HTTP 200, " + notJson + "too deeply nested document"},
        {"100000 levels of objects", [] { return answer(200, times(100'000, R"({"a":)")); }, Then::Keep,
            "HTTP 200, " + notJson + "too deeply nested document"},
        {"1000 levels", answer(200, reply(R"(,"a":)" + times(1000, "[") + times(1000, "]")))},
        {"invalid UTF-8 in a text", answer(200, reply(",\"a\":\"\xD0\"")), Then::Keep,
            "HTTP 200, " + notJson},
        {"invalid UTF-8 in a key", answer(200, reply(",\"\xC0\xAF\":1")), Then::Keep, "HTTP 200, " + notJson},
        {"a lone surrogate", answer(200, reply(R"(,"a":"\ud800")"))},
        {"a number beyond 64 bits", answer(200, reply(R"(,"a":123456789012345678901234567890)"))},
        {"a number beyond a double", answer(200, reply(R"(,"a":1e999)")), Then::Keep, "HTTP 200, " + notJson},
        {"duplicate keys", answer(200, R"({"token":"x","uuid":"x","status":"wait",)" + reply().substr(1))},
        {"a byte order mark", answer(200, "\xEF\xBB\xBF" + reply())},
        {"a NUL byte after the reply", answer(200, reply() + '\0'), Then::Keep, "HTTP 200, " + notJson},

        {"gzip", answer(200, gzip(reply()), zipped)},
        {"gzip cut off", answer(200, gzip(reply()).substr(0, 30), zipped), Then::Keep, "HTTP 200, "},
        {"gzip that is not gzip", answer(200, reply(), zipped), Then::Keep, "сжатие ответа не понято"},
        {"a compression that nobody asked for", answer(200, reply(), "Content-Encoding: zoo\r\n"), Then::Keep,
            "сжатие ответа не понято"},
        {"a body over 16 MiB", [] { return answer(200, '"' + std::string(17 * mebibyte, 'x') + '"'); },
            Then::Keep, "тело ответа больше 16 МиБ"},
        {"gzip of a body over 16 MiB",
            [] { return answer(200, gzip('"' + std::string(17 * mebibyte, 'x') + '"'), zipped); }, Then::Keep,
            "тело ответа больше 16 МиБ"},
    };
    return table;
}

TransportOptions optionsFor(Short limit)
{
    TransportOptions options = trusting();
    if (limit == Short::FirstByte)
        options.firstByte = 1s;
    if (limit == Short::Stall)
        options.stall = 1s;
    if (limit == Short::Overall)
        options.overall = 1500ms;
    return options;
}

void misbehave(const Fault& fault, Peer& peer)
{
    if (fault.limit == Short::Overall)
        peer.drip(fault.bytes.make(), 100ms);
    else
        peer.send(fault.bytes.make());
    switch (fault.then) {
    case Then::Keep:
        break;
    case Then::Close:
        peer.close();
        break;
    case Then::Reset:
        peer.reset();
        break;
    case Then::Hang:
        peer.hang();
        break;
    }
}

// One line with the request, the cause, the duration and whether the request was sent.
void expectOneLine(const QStringList& lines, Operation operation, const std::string& cause, bool sent = true)
{
    ASSERT_EQ(lines.size(), 1) << lines.join(u'\n').toStdString();
    const QString request = QRegularExpression::escape(requestOf(operation));
    const QString expected =
        cause.empty()
            ? u"^info: Атол\\.Онлайн: %1: HTTP \\d+, \\d+ байт, \\d+ мс$"_s.arg(request)
            : u"^error: Атол\\.Онлайн: нет ответа на %1: %2.* \\(\\d+ мс, запрос %3отправлен\\)$"_s.arg(
                  request, QRegularExpression::escape(QString::fromStdString(cause)),
                  sent ? QString() : u"не "_s);
    EXPECT_TRUE(QRegularExpression(expected).match(lines.first()).hasMatch())
        << lines.first().toStdString() << "\nis not\n"
        << expected.toStdString();
}

constexpr auto noConnection = "FrWorkWithServiceException: Нет связи с ФР";
// Far less than the default limits, far more than a busy machine needs.
constexpr qint64 longestWait = 15'000;

// An operation on a new connection, or on one that an earlier exchange left open.
struct Attempt
{
    Operation operation;
    bool kept;
};

void PrintTo(const Attempt& attempt, std::ostream* out)
{
    *out << testing::PrintToString(attempt.operation) << (attempt.kept ? "Kept" : "");
}

class Faults : public testing::TestWithParam<std::tuple<Attempt, bool, std::size_t>>
{
};

TEST_P(Faults, EndsInTimeWithOneRequestAndOneLine)
{
    const auto [attempt, tls, row] = GetParam();
    const auto [operation, kept] = attempt;
    const Fault& fault = faults()[row];
    const Defaults defaults(optionsFor(fault.limit));
    LogCapture log;
    std::atomic<int> seen = 0;
    RawServer server(
        [&](Peer& peer, const std::string&) {
            if (++seen == 1 && kept)
                peer.send(whole);
            else
                misbehave(fault, peer);
        },
        tls ? authority().server() : SslContext());
    WireClient client(server.url() + "/v4/");
    ASSERT_EQ(kept ? client.run(operation) : u"returned"_s, u"returned"_s);
    const QJsonObject before = client.lastResponse();

    log.take();
    QElapsedTimer timer;
    timer.start();
    const QString outcome = client.run(operation);
    EXPECT_LT(timer.elapsed(), longestWait);

    EXPECT_EQ(outcome, fault.cause.empty() ? u"returned"_s : QString::fromUtf8(noConnection));
    if (!fault.cause.empty()) {
        EXPECT_EQ(client.lastResponse(), operation == Operation::Sell ? QJsonObject() : before);
    }
    const bool isGet = operation == Operation::Report;
    const bool wouldBeRepeated = kept && fault.repeatsGet;
    expectOneLine(transportLines(log.lines()), operation,
        wouldBeRepeated && !isGet ? "соединение оборвано, запрос не повторён" : fault.cause);
    const std::size_t wanted = !kept ? 1 : wouldBeRepeated && isGet ? 3 : 2;
    EXPECT_EQ(server.requests().size(), wanted);
}

std::string nameOf(const testing::TestParamInfo<Faults::ParamType>& run)
{
    const auto [attempt, tls, row] = run.param;
    std::string name = testing::PrintToString(attempt) + (tls ? "_Tls_" : "_Plain_") + faults()[row].name;
    for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Table, Faults,
    testing::Combine(testing::Values(Attempt{Operation::Token, false}, Attempt{Operation::Sell, false},
                         Attempt{Operation::Sell, true}, Attempt{Operation::Report, true}),
        testing::Bool(), testing::Range<std::size_t>(0, faults().size())),
    nameOf);

} // namespace
