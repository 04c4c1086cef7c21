// Many registers at once, each in a thread of its own, and as many threads of bare libcurl, in turn. Prints a
// line of JSON for each round. Arguments: rounds and milliseconds a round.

#include "bench/baselines/curlqjson.h"
#include "bench/ours/device.h"
#include "bench/support/child.h"
#include "bench/support/golden.h"
#include "bench/support/process.h"
#include "bench/support/quietlog.h"

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace bench;
using Clock = std::chrono::steady_clock;

constexpr int linesOfSale = 3;

struct Round
{
    std::chrono::milliseconds length;
    const Endpoint& endpoint;
    const Endpoint& recorder;
};

// A shop's next receipt has another buyer, whom our log must mask; the bare contenders have nothing to do
// then.
void nextBuyer(HostSale& sale, int thread, long count)
{
    sale.contact =
        FdRequisite(EFrDriver::BuyerContact, QStringLiteral("buyer%1-%2@example.com").arg(thread).arg(count));
}

void nextBuyer(Sale&, int, long) {}

template <typename Contender, typename Goods>
void run(const char* name, int threads, const Round& round)
{
    const Goods sale(sampleSale(linesOfSale));
    requireGoldenSale(
        name, round.recorder, linesOfSale, [&] { return Contender(round.recorder).registerSale(sale); });
    std::vector<std::unique_ptr<Contender>> contenders;
    for (int i = 0; i < threads; ++i)
        contenders.push_back(std::make_unique<Contender>(round.endpoint));

    std::atomic<bool> over = false;
    std::atomic<long> sold = 0;
    std::latch ready(threads + 1);
    std::vector<std::jthread> running;
    for (int i = 0; i < threads; ++i) {
        running.emplace_back(
            [&, i, mine = contenders[static_cast<std::size_t>(i)].get(), goods = sale]() mutable {
                const auto sell = [&](long count) {
                    nextBuyer(goods, i, count);
                    require(name, mine->registerSale(goods) == goldenSign, QStringLiteral("another answer"));
                };
                // Our transport trusts a connection at once only after three exchanges on it.
                for (long count = -3; count < 0; ++count)
                    sell(count);
                ready.arrive_and_wait();
                long count = 0;
                for (; !over.load(std::memory_order_relaxed); ++count)
                    sell(count);
                sold += count;
            });
    }
    ready.arrive_and_wait();
    const auto start = Clock::now();
    const double processor = processorSeconds();
    std::this_thread::sleep_for(round.length);
    over = true;
    running.clear();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const auto receipts = static_cast<double>(sold);
    std::printf(R"({"contender": "%s", "threads": %d, "sells_per_second": %.1f, "cpu_us": %.2f})"
                "\n",
        name, threads, receipts / seconds, (processorSeconds() - processor) / receipts * 1e6);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int rounds = argc == 3 ? std::atoi(argv[1]) : 0;
    if (rounds < 1)
        return EXIT_FAILURE;
    quietLog();
    const Responder responder(Responder::Wire::Plain);
    const Responder recorder(Responder::Wire::Plain, {QStringLiteral("--record")});
    const Round round{
        std::chrono::milliseconds(std::atoi(argv[2])), responder.endpoint(), recorder.endpoint()};
    for (int i = 0; i < rounds; ++i) {
        for (const int threads : {1, 5, 20, 100}) {
            run<Device, HostSale>("ours", threads, round);
            run<CurlQJson, Sale>("curl", threads, round);
        }
    }
}
