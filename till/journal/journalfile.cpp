#include "till/journal/journalfile.h"

#include "till/database/privatefile.h"
#include "till/journal/journalerror.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

QString defaultJournalFile()
{
    // systemd separates several folders by colons.
    const QString given = qEnvironmentVariable("STATE_DIRECTORY").section(u':', 0, 0);
    if (!given.isEmpty())
        return given + u"/journal.db"_s;
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // Only absolute paths count there.
    if (const QString home = qEnvironmentVariable("HOME"); !state.startsWith(u'/'))
        state = home.isEmpty() ? QString() : home + u"/.local/state"_s;
    return state.isEmpty() ? QString() : state + u"/frhost/journal.db"_s;
}

void createFolderOf(const QString& file)
{
    if (const QString reason = makeFolderOf(file); !reason.isEmpty())
        throw JournalError(file, reason);
}

void createPrivateFile(const QString& file)
{
    if (const QString reason = makePrivateFile(file); !reason.isEmpty())
        throw JournalError(file, reason);
}

} // namespace till
