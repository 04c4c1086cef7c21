#pragma once

#include "host/transport/restclient.h"

#include <QJsonObject>
#include <QList>

/// A transport that answers from a queue and records the requests. While it lives, it replaces every
/// RestClient that the factory creates.
///
/// A request without a queued answer gets the error text "nothing was queued", so that a test that forgot an
/// answer fails visibly.
class ScriptedTransport : public RestClient
{
public:
    struct Request
    {
        QString verb;
        QString url;
        QByteArray body;
        Headers headers;

        [[nodiscard]] QJsonObject json() const;
    };

    ScriptedTransport();
    ~ScriptedTransport() override;

    /// Queues the body of the next answer.
    void answer(const QByteArray& json);
    /// Queues an exchange without an answer.
    void dropAnswer();

    [[nodiscard]] const QList<Request>& requests() const { return sent; }
    /// "POST url" and "GET url" of every request so far.
    [[nodiscard]] QStringList requestLines() const;

    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override;
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override;
    [[nodiscard]] QVariant getResponseData() const override;

private:
    bool exchange(const Request& request);

    QList<QByteArray> queue;
    QList<Request> sent;
    QVariant response;
};
