#pragma once

#include "host/transport/curlhandle.h"
#include "host/transport/httpmessage.h"
#include "host/transport/idlehandles.h"
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
/// whether a POST may use it again, and IdleHandles closes it when that time is over. A GET whose kept
/// connection turns out to be closed is repeated once.
class HttpConnection
{
public:
    /// Throws std::bad_alloc.
    explicit HttpConnection(const TransportOptions& transportOptions);
    ~HttpConnection();
    Q_DISABLE_COPY_MOVE(HttpConnection)

    /// Blocks for one exchange, within the limits of the options. `beforeSending` is called before any part
    /// of the request may reach the peer; it must not throw. Throws std::bad_alloc.
    [[nodiscard]] HttpReply perform(const HttpRequest& request, const std::function<void()>& beforeSending);

    /// What the server showed in the last TLS handshake that succeeded, if the options say to keep it.
    [[nodiscard]] const std::optional<PeerCertificate>& certificate() const { return shown; }

private:
    template <typename Value>
    void set(CURLoption option, Value value)
    {
        curl_easy_setopt(handle->easy.get(), option, value);
    }

    void makeHandle();
    void makeEasy();
    void forgetRepetitions();
    void configure();
    void prepare(const HttpRequest& request);
    void setHeaders(const QHash<QString, QString>& wanted);
    void setVerb(const HttpRequest& request);
    void setRoute();
    void setTls();
    [[nodiscard]] QString run(HttpTransfer& transfer);
    static int startResolving(void*, void*, void* context);
    static curl_socket_t openSocket(void* context, curlsocktype, curl_sockaddr* peer);
    [[nodiscard]] bool mayConnect();
    void noteSent(HttpTransfer& transfer) const;
    void noteConnection(bool answered);
    void noteCertificate();
    [[nodiscard]] QString result(const HttpTransfer& transfer);

    TransportOptions options;
    std::optional<PeerCertificate> shown;
    KeptConnection kept;
    // The transfer of the exchange that is going on; null between exchanges.
    HttpTransfer* current = nullptr;
    // Between exchanges, the handle is in its place.
    std::unique_ptr<CurlHandle> handle;
    IdleHandles::Place place;
    std::shared_ptr<IdleHandles> idle;
};

} // namespace hostruntime
