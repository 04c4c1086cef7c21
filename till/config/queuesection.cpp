#include "till/config/queuesection.h"

#include "till/error.h"
#include "till/nearestname.h"
#include "till/text.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr int mostRegisters = 64;
constexpr int shortestLease = 5;
constexpr int longestLease = 3600;

[[noreturn]] void fail(const RegisterConfig& config, const IniEntry& entry, const QString& what)
{
    throw Error(Problem::Setup, u"%1:%2: %3"_s.arg(config.file, QString::number(entry.line), what));
}

int numberIn(const RegisterConfig& config, const IniEntry& entry, int least, int most)
{
    bool isNumber = false;
    const int number = entry.value.toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        fail(config, entry,
            Text::tr("%1 must be %2 to %3").arg(entry.key, QString::number(least), QString::number(most)));
    return number;
}

// Everything else about the server, and who logs in how, is the service file's.
QString storeIn(const RegisterConfig& config, const IniEntry& entry)
{
    static const QRegularExpression service(u"^postgresql:service=[A-Za-z0-9_.-]+$"_s);
    if (service.match(entry.value).hasMatch())
        return entry.value;
    if (entry.value.isEmpty() || entry.value.startsWith("postgresql:"_L1))
        fail(config, entry,
            Text::tr("store must be the path of a file, or postgresql:service=NAME with the name of a "
                     "service in the service file of PostgreSQL"));
    return QFileInfo(config.file).absoluteDir().absoluteFilePath(entry.value);
}

} // namespace

void readQueueEntry(RegisterConfig& config, const IniEntry& entry)
{
    if (entry.key == "store"_L1) {
        config.queue.store = storeIn(config, entry);
    } else if (entry.key == "parallel"_L1) {
        config.queue.parallel = numberIn(config, entry, 1, mostRegisters);
    } else if (entry.key == "lease"_L1) {
        config.queue.lease = std::chrono::seconds(numberIn(config, entry, shortestLease, longestLease));
    } else {
        fail(config, entry, Text::tr("unknown key; %1").arg(hintFor(entry.key, queueKeys())));
    }
}

QStringList queueKeys()
{
    return {u"store"_s, u"parallel"_s, u"lease"_s};
}

} // namespace till
