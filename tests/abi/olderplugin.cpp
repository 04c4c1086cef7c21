#include "tests/abi/olderplugin.h"

#include "host/log/log4qt.h"
#include "host/mockfactory.h"
#include "host/transport/restclient.h"

using namespace Qt::Literals::StringLiterals;

extern "C" Q_DECL_EXPORT void useClient(OlderPlugin& plugin)
{
    const QSharedPointer<RestClient> client = MockFactory<RestClient>::create();
    client->setLogger(Log4Qt::LogManager::logger(u"frdriver"_s, u"older"_s));
    client->setTargetAlias(u"Атол.Онлайн"_s);
    client->post(plugin.url, "{}", {{u"token"_s, u"T"_s}});
    plugin.reply = client->getResponseData();
    plugin.sizeOfClient = sizeof(RestClient);
    plugin.whileAlive(client.data());
}
