#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QUrl>

class QJsonDocument;
class QVariant;
template <typename Key, typename T>
class QHash;

namespace Log4Qt {
class Logger;
}

// Sends nothing: every client answers from one script, without a body when that is at its end.
class RestClient : public QObject
{
public:
    void setLogger(const Log4Qt::Logger*) {}
    void setTargetAlias(const QString&) {}

    virtual void get(const QUrl& url, const QJsonDocument& document, const QHash<QString, QString>& headers);
    virtual void post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers);
    virtual QVariant getResponseData();

    struct Request
    {
        QUrl url;
        QByteArray body;
        QByteArray token;
    };
    inline static QList<Request> requests;
    inline static QList<QByteArray> script;
};
