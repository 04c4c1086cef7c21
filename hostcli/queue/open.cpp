#include "hostcli/queue/open.h"

#include "hostcli/commands/setup.h"
#include "hostcli/failure.h"
#include "queue/store/storeerror.h"
#include "till/database/privatefile.h"
#include "till/text.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString settingOf(const RegisterConfig& config, const QString& name)
{
    const auto found = std::find_if(config.settings.begin(), config.settings.end(),
        [&](const Setting& setting) { return setting.name == name; });
    return found == config.settings.end() ? QString() : found->value;
}

QString ownFile(bool mayCreate)
{
    const QString file = queue::defaultStoreFile();
    if (file.isEmpty())
        throw Failure(ExitCode::LocalFailure,
            Text::tr("There is no folder for the queue, because HOME is not set. Name a file as \"store\" in "
                     "section [queue] of the configuration."));
    const QString reason = mayCreate ? makeFolderOf(file) : QString();
    if (!reason.isEmpty())
        throw queue::StoreError(file, reason);
    return file;
}

} // namespace

QueuePlace placeOf(const CommandLine& line)
{
    QueuePlace place{serviceConfigOf(line), {}, {}};
    // What names the register; only `work` needs more.
    requireConnection(place.config, {u"url"_s, u"groupCode"_s});
    const QueueAction action = line.queue.action;
    const bool mayCreate = action == QueueAction::Add || action == QueueAction::Work;
    place.file = place.config.queue.store.isEmpty() ? ownFile(mayCreate) : place.config.queue.store;
    place.address =
        queue::registerAddress(settingOf(place.config, u"url"_s), settingOf(place.config, u"groupCode"_s));
    return place;
}

queue::Store storeAt(const QueuePlace& place)
{
    return {place.file, place.address, queue::Store::defaultPatience, {}, queue::Missing::Report};
}

} // namespace frhost
