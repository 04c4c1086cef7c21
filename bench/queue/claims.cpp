// Claims of the queue on a PostgreSQL server: claimsbench fill PLACE RECEIPTS, then
// claimsbench claim PLACE WORKERS SECONDS, which prints the microseconds that a claim takes all workers
// together; claimsbench stay PLACE WORKERS SECONDS prints those of a receipt that is handed over, claimed and
// concluded as registered.
#include "queue/store/claims.h"
#include "bench/queue/measures.h"
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
    const queue::NewEntry one = bench::receiptNumber(0);
    store.database().change("INSERT INTO receipts (register, id, file, line, text, digest, added, changed)"
                            " SELECT ?, i::text, ?, i, ?, ?, @now, @now FROM generate_series(1, ?) AS i",
        {store.registerNumber(), one.file, one.text, one.digest, receipts});
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

// As a shop hands over: one receipt at a time.
int stayUntil(Clock::time_point end, const QString& place, int worker)
{
    queue::Store store(place, address);
    queue::WorkerLocks locks(store);
    queue::Claims claims(store, locks, enrol(store, locks, u"bench"_s), std::chrono::hours(1));
    queue::Ending ending;
    ending.state = queue::State::Registered;
    ending.uuid = u"2ea26f17-0884-4f08-b120-306fc096a58f"_s;
    ending.evidence = till::JournalEvidence{u"0000440300046840"_s, worker, u"3449555941"_s, 160};
    ending.result = QByteArray(700, 'x');
    int stayed = 0;
    for (; Clock::now() < end; ++stayed) {
        queue::NewEntry entry = bench::receiptNumber(stayed);
        entry.id = u"%1-%2"_s.arg(worker).arg(stayed);
        storeAll(store, [&](const auto& add) { add(entry); });
        if (const auto claim = claims.next(); claim && !claims.conclude(*claim, ending)) {
            std::fputs("a claim was lost\n", stderr);
            std::exit(EXIT_FAILURE);
        }
    }
    return stayed;
}

// Runs it in as many threads as there are workers; it returns how many receipts it did until the end.
void together(int workers, int seconds, const std::function<int(Clock::time_point end, int worker)>& work)
{
    std::atomic<int> done = 0;
    const auto begin = Clock::now();
    const auto end = begin + std::chrono::seconds(seconds);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < workers; ++i)
            threads.emplace_back([&, i] { done += work(end, i); });
    }
    const std::chrono::duration<double, std::micro> taken = Clock::now() - begin;
    std::printf("%.3f\n", taken.count() / done);
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
            together(arguments[2].toInt(), arguments[3].toInt(),
                [&](Clock::time_point end, int) { return claimUntil(end, arguments[1]); });
        else if (arguments.size() == 4 && arguments[0] == "stay"_L1)
            together(arguments[2].toInt(), arguments[3].toInt(),
                [&](Clock::time_point end, int worker) { return stayUntil(end, arguments[1], worker); });
        else
            return EXIT_FAILURE;
    } catch (const till::Error& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error.message()));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
