#include "bench/support/process.h"

#include <QDir>
#include <QFile>

#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace bench {

long residentKilobytes()
{
    QFile status(u"/proc/self/status"_s);
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.simplified().split(' ').value(1).toLong();
        }
    }
    return 0;
}

int openFiles()
{
    // Without the descriptor of this listing.
    return static_cast<int>(QDir(u"/proc/self/fd"_s)
                                .entryList(QDir::System | QDir::AllEntries | QDir::NoDotAndDotDot)
                                .size()) -
           1;
}

double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace bench
