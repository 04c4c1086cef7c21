#pragma once

#include "driver/atolonlinefrdriver.h"
#include "tests/support/scriptedtransport.h"

#include <QStringList>

/// A transport and a driver that note each request and each sleep in one list, in the order in which they
/// happen: "POST url", "GET url" and "sleep 200". Nothing is slept.
class NotedTransport : public ScriptedTransport
{
public:
    explicit NotedTransport(QStringList& notes)
        : steps(notes)
    {
    }

    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override
    {
        steps << QStringLiteral("GET ") + url.toString();
        return ScriptedTransport::get(url, document, headers);
    }
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override
    {
        steps << QStringLiteral("POST ") + url.toString();
        return ScriptedTransport::post(url, body, headers);
    }

private:
    QStringList& steps;
};

/// See NotedTransport.
class NotedDriver : public AtolOnlineFRDriver
{
public:
    NotedDriver(QStringList& notes, AtolOnlineSettings* cloudSettings)
        : AtolOnlineFRDriver(cloudSettings)
        , steps(notes)
    {
    }

    void msleep(int ms) const override { steps << QStringLiteral("sleep %1").arg(ms); }

private:
    QStringList& steps;
};
