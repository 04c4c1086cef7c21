#pragma once

#include "host/transport/httpmessage.h"
#include "host/transport/transportoptions.h"

#include <QtGlobal>

#include <functional>
#include <memory>

namespace hostruntime {

/// Carries one request at a time over HTTP. One thread at a time.
///
/// A POST is put on the wire at most once. The connection is kept between exchanges, and KeptConnection says
/// when a POST may use it again; a GET whose kept connection turns out to be closed is repeated once.
class HttpConnection
{
public:
    explicit HttpConnection(const TransportOptions& options);
    ~HttpConnection();
    Q_DISABLE_COPY_MOVE(HttpConnection)

    /// `beforeSending` is called before any part of the request may reach the peer; it must not throw.
    [[nodiscard]] HttpReply perform(const HttpRequest& request, const std::function<void()>& beforeSending);

private:
    class Session;
    std::unique_ptr<Session> session;
};

} // namespace hostruntime
