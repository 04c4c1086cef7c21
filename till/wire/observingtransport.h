#pragma once

#include "host/transport/restclient.h"
#include "till/wire/serviceanswer.h"

#include <mutex>

namespace till {

/// The real transport, which also notes what went over the wire. The driver's exceptions alone cannot tell
/// "not sent", "refused" and "no answer" apart.
///
/// One thread uses it; others may only hold() it.
class ObservingTransport : public RestClient
{
public:
    /// Forgets what was seen; call before each receipt.
    void startReceipt();
    [[nodiscard]] const WireRecord& seen() const { return record; }

    /// While the lock is held, seen() does not change and no further request goes out.
    [[nodiscard]] std::unique_lock<std::mutex> hold() { return std::unique_lock(guard); }

    /// Throws FrWorkWithServiceException instead of asking once more about a document that the service has
    /// reported as failed: the driver takes some codes of a failed register for "ask again".
    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override;
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override;

protected:
    void sending() override;

private:
    void forget(ServiceAnswer& answer);
    void note(ServiceAnswer& into);

    std::mutex guard;
    WireRecord record;
    bool carriesReceipt = false;
};

} // namespace till
