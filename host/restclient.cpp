#include "host/restclient.h"

#include <QElapsedTimer>
#include <QJsonParseError>

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <tuple>

template class MockFactory<RestClient>;

namespace {

using namespace std::chrono_literals;

// A till waits with a customer in front of it: an unreachable address is known soon, a slow answer is given
// time, because giving up on a receipt that is under way leaves its outcome unknown.
constexpr std::chrono::milliseconds connectTimeout = 10s;
constexpr std::chrono::milliseconds overallTimeout = 60s;
constexpr std::size_t maxReplySize = 16 * 1024 * 1024;

using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

bool append(HeaderList& list, const QByteArray& line)
{
    curl_slist* grown = curl_slist_append(list.get(), line.constData());
    if (!grown)
        return false;
    std::ignore = list.release();
    list.reset(grown);
    return true;
}

bool hasLineBreak(const QString& text)
{
    return text.contains(u'\r') || text.contains(u'\n');
}

// What one exchange reads from and writes to; the callbacks below get a pointer to it.
struct Transfer
{
    QByteArray body;
    qsizetype sent = 0;
    QByteArray reply;
    bool isPost = false;
    int attempts = 0;
};

std::size_t readBody(char* to, std::size_t size, std::size_t count, void* context)
{
    auto& transfer = *static_cast<Transfer*>(context);
    const auto room = static_cast<qsizetype>(size * count);
    const qsizetype part = std::min(room, transfer.body.size() - transfer.sent);
    std::copy_n(transfer.body.constData() + transfer.sent, part, to);
    transfer.sent += part;
    return static_cast<std::size_t>(part);
}

std::size_t writeReply(char* from, std::size_t size, std::size_t count, void* context)
{
    auto& transfer = *static_cast<Transfer*>(context);
    const std::size_t part = size * count;
    if (static_cast<std::size_t>(transfer.reply.size()) + part > maxReplySize)
        return 0;
    transfer.reply.append(from, static_cast<qsizetype>(part));
    return part;
}

// Called before each request that the library is about to put on the wire. It would repeat a POST by itself
// when a kept connection breaks; the second attempt ends here.
int beforeRequest(void* context, char*, char*, int, int)
{
    auto& transfer = *static_cast<Transfer*>(context);
    ++transfer.attempts;
    return transfer.isPost && transfer.attempts > 1 ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

} // namespace

class RestClient::Connection
{
public:
    Connection()
    {
        static std::once_flag initialised;
        std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
        handle.reset(curl_easy_init());
    }

    /// Performs the transfer; returns the cause of a failure, empty for none.
    [[nodiscard]] QString perform(
        const char* verb, const QUrl& url, const HeaderList& headers, Transfer& transfer)
    {
        if (!handle)
            return QStringLiteral("libcurl: no handle");
        curl_easy_reset(handle.get());
        errorText[0] = '\0';
        set(CURLOPT_ERRORBUFFER, errorText);
        setRequest(verb, url.toEncoded(), headers, transfer);
        setLimits();
        set(CURLOPT_WRITEFUNCTION, &writeReply);
        set(CURLOPT_WRITEDATA, &transfer);
        set(CURLOPT_PREREQFUNCTION, &beforeRequest);
        set(CURLOPT_PREREQDATA, &transfer);
        const CURLcode code = curl_easy_perform(handle.get());
        if (code == CURLE_OK)
            return {};
        return QString::fromUtf8(errorText[0] != '\0' ? errorText : curl_easy_strerror(code));
    }

    [[nodiscard]] long status() const
    {
        long value = 0;
        curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &value);
        return value;
    }

private:
    struct Cleanup
    {
        void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
    };

    template <typename Value>
    void set(CURLoption option, Value value)
    {
        curl_easy_setopt(handle.get(), option, value);
    }

    void setRequest(const char* verb, const QByteArray& url, const HeaderList& headers, Transfer& transfer)
    {
        set(CURLOPT_URL, url.constData());
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_HTTPHEADER, headers.get());
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        set(CURLOPT_CUSTOMREQUEST, verb);
        if (!transfer.isPost && transfer.body.isEmpty()) {
            set(CURLOPT_HTTPGET, 1L);
            return;
        }
        // A read callback without a seek callback: the library cannot rewind the body, so it cannot resend
        // it.
        set(CURLOPT_POST, 1L);
        set(CURLOPT_READFUNCTION, &readBody);
        set(CURLOPT_READDATA, &transfer);
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(transfer.body.size()));
    }

    void setLimits()
    {
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_FOLLOWLOCATION, 0L);
        set(CURLOPT_ACCEPT_ENCODING, "gzip");
        set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connectTimeout.count()));
        set(CURLOPT_TIMEOUT_MS, static_cast<long>(overallTimeout.count()));
    }

    std::unique_ptr<CURL, Cleanup> handle;
    char errorText[CURL_ERROR_SIZE] = {};
};

RestClient::RestClient()
    : connection(std::make_unique<Connection>())
{
}

RestClient::~RestClient() = default;

void RestClient::setLogger(const Log4Qt::Logger* value)
{
    logger = value;
}

void RestClient::setTargetAlias(const QString& value)
{
    alias = value;
}

bool RestClient::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    return exchange(
        "GET", url, document.isEmpty() ? QByteArray() : document.toJson(QJsonDocument::Compact), headers);
}

bool RestClient::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    return exchange("POST", url, body, headers);
}

QVariant RestClient::getResponseData() const
{
    return response;
}

bool RestClient::exchange(const char* verb, const QUrl& url, const QByteArray& body, const Headers& headers)
{
    response.clear();
    QElapsedTimer timer;
    timer.start();
    const auto fail = [&](const QString& cause) {
        // The query is left out: a caller may carry a token there.
        const QString request = QLatin1StringView(verb) + u' ' + url.path();
        if (logger)
            logger->error("%1: нет ответа на %2: %3", alias, request,
                QStringLiteral("%1 (%2 мс)").arg(cause, QString::number(timer.elapsed())));
        return false;
    };

    HeaderList list(nullptr, &curl_slist_free_all);
    append(list, "Expect:");
    for (auto entry = headers.begin(); entry != headers.end(); ++entry) {
        if (hasLineBreak(entry.key()) || hasLineBreak(entry.value()))
            return fail(QStringLiteral("перевод строки в заголовке %1").arg(entry.key().simplified()));
        const QByteArray name = entry.key().toUtf8();
        append(list, entry.value().isEmpty() ? name + ';' : name + ": " + entry.value().toUtf8());
    }

    Transfer transfer;
    transfer.body = body;
    transfer.isPost = qstrcmp(verb, "POST") == 0;
    if (const QString cause = connection->perform(verb, url, list, transfer); !cause.isEmpty())
        return fail(cause);
    const QString status = QStringLiteral("HTTP %1").arg(connection->status());
    if (transfer.reply.isEmpty())
        return fail(status + QStringLiteral(", пустое тело"));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(transfer.reply, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(status + QStringLiteral(", тело не JSON: ") + error.errorString());
    response = document.toVariant();
    return true;
}
