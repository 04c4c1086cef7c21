#include "tests/e2e/support/service.h"

using namespace Qt::Literals::StringLiterals;

Service::Request::Request(Peer& from, const std::string& request)
    : peer(from)
    , text(request)
{
}

Service::Call Service::Request::call() const
{
    if (text.starts_with("GET "))
        return Call::Report;
    const bool token = text.substr(0, text.find('\n')).find("/getToken") != std::string::npos;
    return token ? Call::Token : Call::Sell;
}

Service::Service(const Script& script)
    : server([script](Peer& peer, const std::string& text) {
        Request request(peer, text);
        script(request);
    })
{
}

QString Service::url() const
{
    return QString::fromStdString(server.url()) + u"/possystem/v4/"_s;
}
