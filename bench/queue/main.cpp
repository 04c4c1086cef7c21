// The queue in a SQLite file, each with its baseline, in microseconds of one receipt:
//   queuebench add FOLDER ROUNDS RECEIPTS: a line of JSON a round, for receipts that are added one by one
//   queuebench batch FOLDER RECEIPTS: of bare inserts in one transaction
//   queuebench waiting FOLDER FEW MANY ROUNDS CLAIMS: a line a round, for claims where so many wait
#include "bench/queue/bareinserts.h"
#include "bench/queue/measures.h"
#include "queue/store/claims.h"
#include "queue/store/intake.h"
#include "till/error.h"

#include <QStringList>

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

using bench::BareInserts;
using bench::microsecondsOfEach;
using bench::receiptNumber;

const QString address = u"bench"_s;

void add(const QString& folder, int rounds, int receipts)
{
    queue::Store store(folder + u"/queue.db"_s, address);
    BareInserts bare(folder + u"/bare.db"_s);
    for (int round = 0; round < rounds; ++round) {
        const int first = round * receipts;
        const double ours = microsecondsOfEach(receipts, [&] {
            for (int i = first; i < first + receipts; ++i)
                storeAll(store, [&](const auto& each) { each(receiptNumber(i)); });
        });
        const double theirs = microsecondsOfEach(receipts, [&] {
            for (int i = first; i < first + receipts; ++i)
                bare.insert(receiptNumber(i));
        });
        std::printf("{\"ours\": %.3f, \"bare\": %.3f}\n", ours, theirs);
    }
}

void batch(const QString& folder, int receipts)
{
    BareInserts bare(folder + u"/bare.db"_s);
    std::printf("%.3f\n", microsecondsOfEach(receipts, [&] {
        bare.transaction([&] {
            for (int i = 0; i < receipts; ++i)
                bare.insert(receiptNumber(i));
        });
    }));
}

// A store in which so many wait, and a worker.
class Waiting
{
public:
    Waiting(const QString& file, int receipts)
        : store(file, address)
        , locks(store)
        , claims(store, locks, enrol(store, locks, u"bench"_s), std::chrono::hours(1))
    {
        store.database().change(
            "INSERT INTO receipts (register, id, file, line, text, digest, added, changed)"
            " WITH RECURSIVE counted(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM counted WHERE i < ?)"
            " SELECT ?, i, 'receipts.jsonl', i, ?, 'digest', @now, @now FROM counted",
            {receipts, store.registerNumber(), QByteArray(200, 'x')});
        store.database().change("PRAGMA wal_checkpoint(TRUNCATE)");
    }

    // A store that runs empty would be measured as a fast one.
    void claim(int many)
    {
        for (int i = 0; i < many; ++i) {
            if (!claims.next()) {
                std::fputs("too few receipts\n", stderr);
                std::exit(EXIT_FAILURE);
            }
        }
    }

private:
    queue::Store store;
    queue::WorkerLocks locks;
    queue::Claims claims;
};

void wait(const QString& folder, int few, int many, int rounds, int claims)
{
    Waiting ofFew(folder + u"/few.db"_s, few);
    Waiting ofMany(folder + u"/many.db"_s, many);
    for (int round = 0; round < rounds; ++round) {
        const double withFew = microsecondsOfEach(claims, [&] { ofFew.claim(claims); });
        const double withMany = microsecondsOfEach(claims, [&] { ofMany.claim(claims); });
        std::printf("{\"few\": %.3f, \"many\": %.3f}\n", withFew, withMany);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const auto number = [&](qsizetype i) { return arguments[i].toInt(); };
    try {
        if (arguments.size() == 4 && arguments[0] == "add"_L1)
            add(arguments[1], number(2), number(3));
        else if (arguments.size() == 3 && arguments[0] == "batch"_L1)
            batch(arguments[1], number(2));
        else if (arguments.size() == 6 && arguments[0] == "waiting"_L1)
            wait(arguments[1], number(2), number(3), number(4), number(5));
        else
            return EXIT_FAILURE;
    } catch (const till::Error& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error.message()));
        return EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
