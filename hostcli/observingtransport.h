#pragma once

#include "host/restclient.h"
#include "hostcli/serviceanswer.h"

namespace frhost {

/// The real transport, which also notes what went over the wire. The driver's exceptions alone cannot tell
/// "not sent", "refused" and "no answer" apart.
class ObservingTransport : public RestClient
{
public:
    /// Forgets what was seen; call before each receipt.
    void startReceipt() { exchange = {}; }
    [[nodiscard]] const Exchange& seen() const { return exchange; }

    /// Throws FrWorkWithServiceException instead of asking once more about a document that the service has
    /// reported as failed: the driver takes some codes of a failed register for "ask again".
    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override;
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override;

private:
    void note(ServiceAnswer& into);

    Exchange exchange;
};

} // namespace frhost
