#include "hostcli/queue/open.h"

#include "hostcli/commands/setup.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/console.h"
#include "queue/store/storeerror.h"
#include "till/database/privatefile.h"
#include "till/text.h"

#include <QFile>

#include <algorithm>
#include <sys/stat.h>

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
    if (const QString warning = exposureOf(place.file); !warning.isEmpty())
        Console::instance().line(warning);
    return place;
}

QString exposureOf(const QString& file)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0 || !S_ISREG(status.st_mode) ||
        (status.st_mode & (S_IRGRP | S_IROTH)) == 0)
        return {};
    return Text::tr(
        "%1 holds the buyers' telephones and e-mail addresses and has the mode %2, so others can read "
        "it. Its owner should run: %3")
        .arg(
            file, QString::number(status.st_mode & 07777, 8).rightJustified(4, u'0'), u"chmod 600 "_s + file);
}

queue::Store storeAt(const QueuePlace& place)
{
    return {place.file, place.address, queue::Store::defaultPatience, {}, queue::Missing::Report};
}

} // namespace frhost
