// Claims of the queue on a PostgreSQL server: claimsbench fill PLACE RECEIPTS, then
// claimsbench claim PLACE WORKERS SECONDS, which prints the microseconds that a claim takes all workers
// together.
#include "queue/store/claims.h"
#include "queue/store/intake.h"
#include "till/error.h"

#include <QStringList>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

using Clock = std::chrono::steady_clock;

const QString address = u"bench"_s;

void fill(const QString& place, int receipts)
{
    queue::Store store(place, address);
    storeAll(store, [&](const auto& add) {
        for (int i = 0; i < receipts; ++i) {
            const QString id = QString::number(i);
            add({id, QByteArray(700, 'x'), QByteArray(64, 'd'), u"receipts.jsonl"_s, i});
        }
    });
}

// A store that runs empty would be measured as a fast one.
int claimUntil(Clock::time_point end, const QString& place)
{
    queue::Store store(place, address);
    queue::WorkerLocks locks(store);
    queue::Claims claims(store, locks, enrol(store, locks, u"bench"_s), std::chrono::hours(1));
    int claimed = 0;
    for (; Clock::now() < end; ++claimed) {
        if (!claims.next()) {
            std::fputs("too few receipts\n", stderr);
            std::exit(EXIT_FAILURE);
        }
    }
    return claimed;
}

void claim(const QString& place, int workers, int seconds)
{
    std::atomic<int> claimed = 0;
    const auto begin = Clock::now();
    const auto end = begin + std::chrono::seconds(seconds);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < workers; ++i)
            threads.emplace_back([&] { claimed += claimUntil(end, place); });
    }
    const std::chrono::duration<double, std::micro> taken = Clock::now() - begin;
    std::printf("%.3f\n", taken.count() / claimed);
}

} // namespace

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    try {
        if (arguments.size() == 3 && arguments[0] == "fill"_L1)
            fill(arguments[1], arguments[2].toInt());
        else if (arguments.size() == 4 && arguments[0] == "claim"_L1)
            claim(arguments[1], arguments[2].toInt(), arguments[3].toInt());
        else
            return EXIT_FAILURE;
    } catch (const till::Error& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error.message()));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
