#include "till/sale/obstacle.h"

#include "host/log/secrets.h"
#include "till/text.h"

namespace till {

namespace {

namespace secrets = hostruntime::secrets;

struct Row
{
    // Part of the transport's words; the first that is found counts.
    const char* words;
    const char* cause;
    const char* advice;
};

constexpr Row rows[] = {
    {"certificate is not yet valid", QT_TRANSLATE_NOOP("Text", "the certificate is not yet valid"),
        QT_TRANSLATE_NOOP("Text", "Check this machine's clock.")},
    {"certificate has expired", QT_TRANSLATE_NOOP("Text", "the certificate has expired"),
        QT_TRANSLATE_NOOP("Text", "Check this machine's clock; if it is right, ask the service.")},
    {"self-signed certificate",
        QT_TRANSLATE_NOOP(
            "Text", "the certificate is signed by an authority that this machine does not trust"),
        QT_TRANSLATE_NOOP(
            "Text", "Check url; where the network inspects traffic, name the authority as caFile.")},
    {"self signed certificate",
        QT_TRANSLATE_NOOP(
            "Text", "the certificate is signed by an authority that this machine does not trust"),
        QT_TRANSLATE_NOOP(
            "Text", "Check url; where the network inspects traffic, name the authority as caFile.")},
    {"unable to get",
        QT_TRANSLATE_NOOP(
            "Text", "the certificate is signed by an authority that this machine does not trust"),
        QT_TRANSLATE_NOOP(
            "Text", "Check url; where the network inspects traffic, name the authority as caFile.")},
    {"subject name", QT_TRANSLATE_NOOP("Text", "the certificate is for another name"),
        QT_TRANSLATE_NOOP("Text", "Check the name of the server in url.")},
    {"сертификат сервера не принят", QT_TRANSLATE_NOOP("Text", "the certificate is not accepted"),
        QT_TRANSLATE_NOOP("Text", "Check url and this machine's clock; the log names the fault.")},
    {"файл сертификатов не читается", QT_TRANSLATE_NOOP("Text", "the file of authorities cannot be read"),
        QT_TRANSLATE_NOOP("Text", "Check caFile in the configuration.")},
    {"TLS не согласован", QT_TRANSLATE_NOOP("Text", "the server does not speak TLS 1.2 or newer"),
        QT_TRANSLATE_NOOP("Text", "Check url and its port.")},
    {"имя сервера не найдено", QT_TRANSLATE_NOOP("Text", "the name of the server is not known"),
        QT_TRANSLATE_NOOP("Text", "Check url and this machine's name servers.")},
    {"имя прокси не найдено", QT_TRANSLATE_NOOP("Text", "the name of the proxy is not known"),
        QT_TRANSLATE_NOOP("Text", "Check proxy in the configuration.")},
    {"response 407", QT_TRANSLATE_NOOP("Text", "the proxy asks for another user and password"),
        QT_TRANSLATE_NOOP("Text", "Check proxy in the configuration.")},
    {"CONNECT tunnel failed", QT_TRANSLATE_NOOP("Text", "the proxy refuses the connection"),
        QT_TRANSLATE_NOOP("Text", "Check proxy in the configuration.")},
    {"соединение не установлено", QT_TRANSLATE_NOOP("Text", "nobody accepts connections there"),
        QT_TRANSLATE_NOOP("Text", "Check url, the network and the firewall.")},
    {"истекло время на соединение", QT_TRANSLATE_NOOP("Text", "nobody answers there"),
        QT_TRANSLATE_NOOP("Text", "Check url, the network and the firewall.")},
    {"истекло время", QT_TRANSLATE_NOOP("Text", "the answer takes too long"),
        QT_TRANSLATE_NOOP("Text", "Check the network, and try again later.")},
    {"адрес не http и не https", QT_TRANSLATE_NOOP("Text", "the address does not begin with https://"),
        QT_TRANSLATE_NOOP("Text", "Correct url in the configuration.")},
    {"неверный адрес", QT_TRANSLATE_NOOP("Text", "the address is malformed"),
        QT_TRANSLATE_NOOP("Text", "Correct url in the configuration.")},
    {"HTTP 404", QT_TRANSLATE_NOOP("Text", "the service is not at this address"),
        QT_TRANSLATE_NOOP("Text", "Check the path in url; it ends in /possystem/v4/.")},
    {"HTTP 5", QT_TRANSLATE_NOOP("Text", "the server is in trouble"),
        QT_TRANSLATE_NOOP("Text", "Try again later; if it stays like this, ask the service.")},
    {"тело не JSON", QT_TRANSLATE_NOOP("Text", "something else than the service answers there"),
        QT_TRANSLATE_NOOP("Text", "Check url and proxy.")},
    {"тело не объект", QT_TRANSLATE_NOOP("Text", "something else than the service answers there"),
        QT_TRANSLATE_NOOP("Text", "Check url and proxy.")},
    {"пустое тело", QT_TRANSLATE_NOOP("Text", "something else than the service answers there"),
        QT_TRANSLATE_NOOP("Text", "Check url and proxy.")},
    {"ответ не HTTP", QT_TRANSLATE_NOOP("Text", "something else than the service answers there"),
        QT_TRANSLATE_NOOP("Text", "Check url, its port and proxy.")},
    {"соединение оборвано", QT_TRANSLATE_NOOP("Text", "the connection broke off"),
        QT_TRANSLATE_NOOP("Text", "Check the network, and try again.")},
    {"сервер закрыл соединение", QT_TRANSLATE_NOOP("Text", "the connection broke off"),
        QT_TRANSLATE_NOOP("Text", "Check the network, and try again.")},
    {"ответ оборван", QT_TRANSLATE_NOOP("Text", "the connection broke off"),
        QT_TRANSLATE_NOOP("Text", "Check the network, and try again.")},
};

} // namespace

Obstacle obstacleIn(const QString& failure)
{
    for (const Row& row : rows) {
        if (failure.contains(QString::fromUtf8(row.words), Qt::CaseInsensitive))
            return {Text::tr(row.cause), Text::tr(row.advice)};
    }
    return {secrets::masked(failure, secrets::Audience::Anyone), Text::tr("Check url and the network.")};
}

} // namespace till
