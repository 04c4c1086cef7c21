#include "host/transport/httpconnection.h"

#include "host/transport/httptransfer.h"

#include <QLocale>
#include <QTimeZone>

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <tuple>
#include <utility>

namespace hostruntime {

using namespace Qt::Literals::StringLiterals;

namespace {

void append(HeaderLines& list, const QByteArray& line)
{
    curl_slist* grown = curl_slist_append(list.get(), line.constData());
    if (!grown)
        throw std::bad_alloc();
    std::ignore = list.release();
    list.reset(grown);
}

// As a header line, because the library formats its own lines anew for each request.
void appendUnlessGiven(HeaderLines& list, const QHash<QString, QString>& headers, QLatin1StringView name,
    const QByteArray& value)
{
    const auto isSame = [&](const QString& given) { return given.compare(name, Qt::CaseInsensitive) == 0; };
    if (std::none_of(headers.keyBegin(), headers.keyEnd(), isSame))
        append(list, name.latin1() + (": " + value));
}

HeaderLines linesOf(const QHash<QString, QString>& headers, const QString& userAgent)
{
    HeaderLines list;
    // Otherwise a large body would wait for a second for a "100 Continue" that few servers send.
    append(list, "Expect:");
    appendUnlessGiven(list, headers, "User-Agent"_L1, userAgent.toUtf8());
    appendUnlessGiven(list, headers, "Accept-Encoding"_L1, "gzip");
    for (auto entry = headers.begin(); entry != headers.end(); ++entry) {
        const QByteArray name = entry.key().toUtf8();
        append(list, entry.value().isEmpty() ? name + ';' : name + ": " + entry.value().toUtf8());
    }
    return list;
}

// CURLE_TOO_LARGE, which libcurl reports since 8.6, and so may the one that we run with.
constexpr auto tooLarge = static_cast<CURLcode>(100);

QString inWords(CURLcode code)
{
    static constexpr std::array causes{
        // For a reply without a status line; an address with another scheme never comes this far.
        std::pair{CURLE_UNSUPPORTED_PROTOCOL, "ответ не HTTP"},
        std::pair{CURLE_URL_MALFORMAT, "неверный адрес"},
        std::pair{CURLE_COULDNT_RESOLVE_PROXY, "имя прокси не найдено"},
        std::pair{CURLE_COULDNT_RESOLVE_HOST, "имя сервера не найдено"},
        std::pair{CURLE_COULDNT_CONNECT, "соединение не установлено"},
        std::pair{CURLE_SSL_CONNECT_ERROR, "TLS не согласован"},
        std::pair{CURLE_PEER_FAILED_VERIFICATION, "сертификат сервера не принят"},
        std::pair{CURLE_SSL_CACERT_BADFILE, "файл сертификатов не читается"},
        std::pair{CURLE_GOT_NOTHING, "сервер закрыл соединение без ответа"},
        std::pair{CURLE_SEND_ERROR, "соединение оборвано при отправке"},
        std::pair{CURLE_RECV_ERROR, "соединение оборвано"},
        std::pair{CURLE_PARTIAL_FILE, "ответ оборван"},
        std::pair{CURLE_BAD_CONTENT_ENCODING, "сжатие ответа не понято"},
        std::pair{CURLE_WEIRD_SERVER_REPLY, "ответ не HTTP"},
        // Before libcurl 8.6, also reported for a single header line over 100 KB.
        std::pair{CURLE_OUT_OF_MEMORY, "заголовок ответа слишком велик или не хватает памяти"},
        std::pair{tooLarge, "заголовок ответа слишком велик, или заголовков слишком много"},
        std::pair{CURLE_HTTP2, "ошибка HTTP/2"},
        std::pair{CURLE_HTTP2_STREAM, "ошибка HTTP/2"},
    };
    for (const auto& [known, text] : causes) {
        if (known == code)
            return QString::fromUtf8(text);
    }
    return u"обмен не удался"_s;
}

QDateTime expiry(const QString& text)
{
    // TLS libraries write it in their own ways, all in English and UTC.
    for (const char* form : {"MMM d hh:mm:ss yyyy", "yyyy-MM-dd hh:mm:ss"}) {
        QDateTime time = QLocale::c().toDateTime(text, QString::fromLatin1(form));
        if (time.isValid()) {
            time.setTimeZone(QTimeZone::utc());
            return time.toUTC();
        }
    }
    return {};
}

PeerCertificate certificateIn(const curl_slist* fields)
{
    PeerCertificate certificate;
    for (const curl_slist* field = fields; field; field = field->next) {
        const QString line = QString::fromUtf8(field->data);
        const QString value = line.section(u':', 1);
        if (line.startsWith("Subject:"_L1))
            certificate.subject = value;
        else if (line.startsWith("Issuer:"_L1))
            certificate.issuer = value;
        else if (line.startsWith("Expire date:"_L1))
            certificate.expires = expiry(value.simplified().remove(" GMT"_L1));
    }
    return certificate;
}

// The context of every callback, which the handle keeps from one exchange to the next.
HttpTransfer& transferOf(void* context)
{
    return **static_cast<HttpTransfer**>(context);
}

std::size_t writeHeader(char* from, std::size_t size, std::size_t count, void* context)
{
    const bool taken = transferOf(context).addHeader({from, size * count});
    return taken ? size * count : 0;
}

std::size_t writeReply(char* from, std::size_t size, std::size_t count, void* context)
{
    const bool taken = transferOf(context).addBody({from, size * count});
    return taken ? size * count : 0;
}

// Called each time the library is about to put a request on the wire, even when it repeats one by itself.
int beforeRequest(void* context, char*, char*, int, int)
{
    return transferOf(context).begin() ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

} // namespace

HttpConnection::HttpConnection(const TransportOptions& transportOptions)
    : options(transportOptions)
{
    static std::once_flag initialised;
    std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    // After that initialisation, so that the thread of the handles ends before the library is cleaned up.
    idle = IdleHandles::shared();
}

HttpConnection::~HttpConnection()
{
    std::ignore = idle->take(place);
}

HttpReply HttpConnection::perform(const HttpRequest& request, const std::function<void()>& beforeSending)
{
    HttpTransfer transfer(request, options, beforeSending);
    current = &transfer;
    prepare(request);
    QString failure = run(transfer);
    if (!transfer.refusal().isEmpty())
        failure = transfer.refusal();
    long status = 0;
    curl_easy_getinfo(handle->easy.get(), CURLINFO_RESPONSE_CODE, &status);
    if (!failure.isEmpty())
        handle->easy.reset();
    else if (transfer.wasRepeated())
        forgetRepetitions();
    current = nullptr;
    idle->keep(place, std::move(handle));
    return {failure, transfer.wasSent(), static_cast<int>(status), transfer.takeReply()};
}

void HttpConnection::makeHandle()
{
    auto made = std::make_unique<CurlHandle>();
    made->multi.reset(curl_multi_init());
    if (!made->multi)
        throw std::bad_alloc();
    // No connection is kept besides the one in use.
    curl_multi_setopt(made->multi.get(), CURLMOPT_MAXCONNECTS, 1L);
    handle = std::move(made);
}

// What an exchange that failed leaves behind in a handle differs from one libcurl to the next. An easy handle
// is therefore used until an exchange fails, and not for one exchange only, because it holds the TLS
// sessions. The connections belong to the multi handle.
void HttpConnection::makeEasy()
{
    handle->easy.reset(curl_easy_init());
    if (!handle->easy)
        throw std::bad_alloc();
    configure();
}

// The library gives up after five repetitions, and counts those of all exchanges of a handle until it is
// reset.
void HttpConnection::forgetRepetitions()
{
    curl_easy_reset(handle->easy.get());
    configure();
}

void HttpConnection::configure()
{
    set(CURLOPT_ERRORBUFFER, handle->errorText);
    // Otherwise the library would resolve "." and "..".
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTPHEADER, handle->headerLines.get());
    set(CURLOPT_ACCEPT_ENCODING, "gzip");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_NOSIGNAL, 1L);
    // run() enforces the limits; the library's own must not expire first.
    set(CURLOPT_CONNECTTIMEOUT_MS, HttpTransfer::longest.count());
    // A name server that does not answer must not hold the caller up beyond the limit.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_MAXAGE_CONN, static_cast<long>(KeptConnection::longestIdle.count()));
    setRoute();
    setTls();
    set(CURLOPT_HEADERFUNCTION, &writeHeader);
    set(CURLOPT_HEADERDATA, &current);
    set(CURLOPT_WRITEFUNCTION, &writeReply);
    set(CURLOPT_WRITEDATA, &current);
    set(CURLOPT_PREREQFUNCTION, &beforeRequest);
    set(CURLOPT_PREREQDATA, &current);
    set(CURLOPT_RESOLVER_START_FUNCTION, &startResolving);
    set(CURLOPT_RESOLVER_START_DATA, this);
    set(CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    set(CURLOPT_OPENSOCKETDATA, this);
}

// Only what differs from one exchange to the next: to set an option costs more than to look whether it is
// set.
void HttpConnection::prepare(const HttpRequest& request)
{
    // After an exchange that threw, it is still here.
    if (!handle)
        handle = idle->take(place);
    if (!handle)
        makeHandle();
    if (!handle->easy)
        makeEasy();
    handle->errorText[0] = '\0';
    set(CURLOPT_URL, request.url.constData());
    setHeaders(request.headers);
    setVerb(request);
}

void HttpConnection::setHeaders(const QHash<QString, QString>& wanted)
{
    if (handle->headerLines && wanted == handle->headers)
        return;
    HeaderLines lines = linesOf(wanted, options.userAgent);
    set(CURLOPT_HTTPHEADER, lines.get());
    handle->headerLines = std::move(lines);
    handle->headers = wanted;
}

void HttpConnection::setVerb(const HttpRequest& request)
{
    const bool isPost = request.verb == HttpRequest::Verb::Post;
    set(CURLOPT_FRESH_CONNECT, isPost && !kept.mayCarryPost() ? 1L : 0L);
    const bool getsWithBody = !isPost && !request.body.isEmpty();
    set(CURLOPT_CUSTOMREQUEST, getsWithBody ? "GET" : nullptr);
    if (!isPost && !getsWithBody) {
        set(CURLOPT_HTTPGET, 1L);
        return;
    }
    // The size first, because the text is not copied and may hold any byte.
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
    set(CURLOPT_POSTFIELDS, request.body.constData());
}

void HttpConnection::setRoute()
{
    // Unlike a null pointer, an empty text also disables the environment's proxy variables.
    set(CURLOPT_PROXY, options.proxy.toUtf8().constData());
    // For the proxy alone: a service gets its own line.
    if (!options.proxy.isEmpty())
        set(CURLOPT_USERAGENT, options.userAgent.toUtf8().constData());
    set(CURLOPT_NOPROXY, "");
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_HTTP_VERSION,
        static_cast<long>(options.http2 ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1));
}

void HttpConnection::setTls()
{
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    // With a certificate directory, which is Debian's default, the library reads the whole bundle again for
    // each connection.
    set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    if (!options.caFile.isEmpty())
        set(CURLOPT_CAINFO, options.caFile.toUtf8().constData());
    set(CURLOPT_CERTINFO, options.keepCertificate ? 1L : 0L);
}

// Returns why the exchange has failed; empty if it has not.
QString HttpConnection::run(HttpTransfer& transfer)
{
    curl_multi_add_handle(handle->multi.get(), handle->easy.get());
    QString failure;
    for (;;) {
        int running = 0;
        curl_multi_perform(handle->multi.get(), &running);
        if (running == 0) {
            failure = result(transfer);
            break;
        }
        noteSent(transfer);
        const auto [left, expiry] = transfer.nextLimit();
        if (left.count() <= 0) {
            failure = expiry;
            break;
        }
        curl_multi_poll(handle->multi.get(), nullptr, 0, static_cast<int>(left.count()), nullptr);
    }
    noteConnection(failure.isEmpty());
    if (options.keepCertificate)
        noteCertificate();
    // Closes the connection if the exchange is not finished.
    curl_multi_remove_handle(handle->multi.get(), handle->easy.get());
    return failure;
}

int HttpConnection::startResolving(void*, void*, void* context)
{
    return static_cast<HttpConnection*>(context)->mayConnect() ? 0 : 1;
}

curl_socket_t HttpConnection::openSocket(void* context, curlsocktype, curl_sockaddr* peer)
{
    return static_cast<HttpConnection*>(context)->mayConnect()
               ? socket(peer->family, peer->socktype | SOCK_CLOEXEC, peer->protocol)
               : CURL_SOCKET_BAD;
}

// The library repeats a POST whose connection was lost on another connection. This bar judges by what the
// library has sent, and so holds without the other one, which counts what the library announces.
bool HttpConnection::mayConnect()
{
    long sent = 0;
    curl_easy_getinfo(handle->easy.get(), CURLINFO_REQUEST_SIZE, &sent);
    if (sent == 0 || current->mayBeRepeated())
        return true;
    current->refuseRepetition();
    return false;
}

void HttpConnection::noteSent(HttpTransfer& transfer) const
{
    curl_off_t sent = 0;
    curl_easy_getinfo(handle->easy.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
    transfer.noteSent(sent);
}

void HttpConnection::noteConnection(bool answered)
{
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(handle->easy.get(), CURLINFO_ACTIVESOCKET, &socket);
    long opened = 0;
    curl_easy_getinfo(handle->easy.get(), CURLINFO_NUM_CONNECTS, &opened);
    kept.noteUse({socket, opened == 0, answered});
}

// There is none after an exchange over a kept connection.
void HttpConnection::noteCertificate()
{
    curl_certinfo* chain = nullptr;
    if (curl_easy_getinfo(handle->easy.get(), CURLINFO_CERTINFO, &chain) == CURLE_OK && chain &&
        chain->num_of_certs > 0)
        shown = certificateIn(chain->certinfo[0]);
}

QString HttpConnection::result(const HttpTransfer& transfer)
{
    int queued = 0;
    const CURLMsg* message = curl_multi_info_read(handle->multi.get(), &queued);
    const CURLcode code = message ? message->data.result : CURLE_FAILED_INIT;
    // To the library, a reply that ends inside its headers is a success.
    if (code == CURLE_OK)
        return transfer.hasAllHeaders() ? QString() : u"ответ оборван в заголовках"_s;
    const char* detail = handle->errorText[0] != '\0' ? handle->errorText : curl_easy_strerror(code);
    return inWords(code) + u": "_s + QString::fromUtf8(detail);
}

} // namespace hostruntime
