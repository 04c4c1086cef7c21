#pragma once

#include "host/transport/restclient.h"

#include <QByteArray>

namespace till {

/// Sends nothing: keeps the body of the last receipt and answers as the service would.
class RecordingTransport : public RestClient
{
public:
    /// The body of the last receipt; empty when none was handed over since the last call.
    [[nodiscard]] QByteArray takeBody();

    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override;
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override;
    [[nodiscard]] QVariant getResponseData() const override { return answer; }

private:
    QByteArray recorded;
    QVariant answer;
};

} // namespace till
