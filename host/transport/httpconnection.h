#pragma once

#include "host/transport/httpmessage.h"
#include "host/transport/keptconnection.h"
#include "host/transport/peercertificate.h"
#include "host/transport/transportoptions.h"

#include <QHash>
#include <QString>
#include <QtGlobal>

#include <curl/curl.h>

#include <functional>
#include <memory>
#include <optional>

namespace hostruntime {

class HttpTransfer;

/// Sends one request at a time over HTTP. To be used by one thread at a time.
///
/// A POST is put on the wire at most once. The connection is kept between exchanges; KeptConnection decides
/// whether a POST may use it again. A GET whose kept connection turns out to be closed is repeated once.
class HttpConnection
{
public:
    struct FreeLines
    {
        void operator()(curl_slist* lines) const { curl_slist_free_all(lines); }
    };
    using HeaderLines = std::unique_ptr<curl_slist, FreeLines>;

    /// Throws std::bad_alloc.
    explicit HttpConnection(const TransportOptions& transportOptions);
    Q_DISABLE_COPY_MOVE(HttpConnection)

    /// Blocks for one exchange, within the limits of the options. `beforeSending` is called before any part
    /// of the request may reach the peer; it must not throw. Throws std::bad_alloc.
    [[nodiscard]] HttpReply perform(const HttpRequest& request, const std::function<void()>& beforeSending);

    /// What the server showed in the last TLS handshake that succeeded, if the options say to keep it.
    [[nodiscard]] const std::optional<PeerCertificate>& certificate() const { return shown; }

private:
    struct CleanupEasy
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };
    struct CleanupMulti
    {
        void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
    };

    template <typename Value>
    void set(CURLoption option, Value value)
    {
        curl_easy_setopt(easy.get(), option, value);
    }

    void makeHandle();
    void forgetRepetitions();
    void configure();
    void prepare(const HttpRequest& request);
    void setHeaders(const QHash<QString, QString>& wanted);
    void setVerb(const HttpRequest& request);
    void setRoute();
    void setTls();
    [[nodiscard]] QString run(HttpTransfer& transfer);
    void noteConnection(bool answered);
    void noteCertificate();
    [[nodiscard]] QString result(const HttpTransfer& transfer);

    TransportOptions options;
    std::optional<PeerCertificate> shown;
    KeptConnection kept;
    // The transfer of the exchange that is going on; null between exchanges.
    HttpTransfer* current = nullptr;
    // The lines that the handle sends, and what they were made of.
    QHash<QString, QString> headers;
    HeaderLines headerLines;
    // In this order, because the easy handle must be cleaned up first. There is none after a failed exchange.
    std::unique_ptr<CURLM, CleanupMulti> multi;
    std::unique_ptr<CURL, CleanupEasy> easy;
    char errorText[CURL_ERROR_SIZE] = {};
};

} // namespace hostruntime
