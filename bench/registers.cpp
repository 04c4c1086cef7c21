// Many registers at once, each in a thread of its own, and as many threads of bare libcurl, in turn. Prints a
// line of JSON for each round. Arguments: rounds and milliseconds a round.

#include "bench/baselines/curlqjson.h"
#include "bench/support/child.h"
#include "bench/support/device.h"
#include "bench/support/lockcount.h"
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
    Endpoint endpoint;
};

template <typename Contender, typename Goods>
void run(const char* name, int threads, const Round& round)
{
    std::vector<std::unique_ptr<Contender>> contenders;
    for (int i = 0; i < threads; ++i)
        contenders.push_back(std::make_unique<Contender>(round.endpoint));
    const Goods sale(sampleSale(linesOfSale));

    std::atomic<bool> over = false;
    std::atomic<long> sold = 0;
    std::latch ready(threads + 1);
    std::vector<std::jthread> running;
    for (const auto& contender : contenders) {
        running.emplace_back([&, &mine = *contender] {
            mine.registerSale(sale);
            ready.arrive_and_wait();
            long count = 0;
            for (; !over.load(std::memory_order_relaxed); ++count)
                mine.registerSale(sale);
            sold += count;
        });
    }
    ready.arrive_and_wait();
    const auto start = Clock::now();
    const double processor = processorSeconds();
    const LockCount locks = lockCount();
    std::this_thread::sleep_for(round.length);
    over = true;
    running.clear();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const auto receipts = static_cast<double>(sold);
    const LockCount after = lockCount();
    const auto each = [&](std::int64_t LockCount::*count) {
        return static_cast<double>(after.*count - locks.*count) / receipts;
    };
    std::printf(R"({"contender": "%s", "threads": %d, "sells_per_second": %.1f, "cpu_us": %.2f, )"
                R"("locks": %.3f, "waits": %.4f, "qt_futex_calls": %.4f})"
                "\n",
        name, threads, receipts / seconds, (processorSeconds() - processor) / receipts * 1e6,
        each(&LockCount::taken), each(&LockCount::waited), each(&LockCount::futexCallsOfQt));
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
    const Round round{std::chrono::milliseconds(std::atoi(argv[2])), responder.endpoint()};
    for (int i = 0; i < rounds; ++i) {
        for (const int threads : {1, 5, 20, 100}) {
            run<Device, HostSale>("ours", threads, round);
            run<CurlQJson, Sale>("curl", threads, round);
            run<CurlQJsonNew, Sale>("curlnew", threads, round);
        }
    }
}
