// Registers of the loaded plugin at work: many at once, each in a thread of its own, in turn with bare
// libcurl; very many that are idle; and many receipts through one of them. Prints lines of JSON.

#include "bench/baselines/curlqjson.h"
#include "bench/ours/device.h"
#include "bench/support/child.h"
#include "bench/support/golden.h"
#include "bench/support/process.h"
#include "bench/support/quietlog.h"
#include "host/transport/keptconnection.h"

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <latch>
#include <string_view>
#include <thread>
#include <tuple>
#include <vector>

#include <malloc.h>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace bench;
using Clock = std::chrono::steady_clock;

constexpr int linesOfSale = 3;
// What a connection may be idle before it is used again, and the time to notice that it may not.
constexpr auto longestIdle = hostruntime::KeptConnection::longestIdle + std::chrono::milliseconds(200);

void sell(const char* name, Contender& contender)
{
    require(name, contender.registerSale() == goldenSign, u"another answer"_s);
}

void sellInThreads(
    const char* name, Maker maker, int threads, std::chrono::milliseconds length, const Endpoint& endpoint)
{
    std::vector<std::unique_ptr<Contender>> contenders;
    for (int i = 0; i < threads; ++i)
        contenders.push_back(maker(endpoint, linesOfSale));
    requireGoldenSale(name, *contenders.front(), endpoint, linesOfSale);

    std::atomic<bool> over = false;
    std::atomic<long> sold = 0;
    std::latch ready(threads + 1);
    std::vector<std::jthread> running;
    for (const auto& contender : contenders) {
        running.emplace_back([&, &mine = *contender, firstBuyer = std::int64_t(running.size()) << 32] {
            long count = 0;
            const auto sellToNext = [&] {
                mine.setBuyer(firstBuyer + count++);
                sell(name, mine);
            };
            // Our transport waits before a POST until a connection has lasted for three exchanges.
            while (count < 3)
                sellToNext();
            ready.arrive_and_wait();
            while (!over.load(std::memory_order_relaxed))
                sellToNext();
            sold += count - 3;
        });
    }
    ready.arrive_and_wait();
    const auto start = Clock::now();
    const double processor = processorSeconds();
    std::this_thread::sleep_for(length);
    over = true;
    running.clear();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const auto receipts = static_cast<double>(sold);
    std::printf(R"({"contender": "%s", "threads": %d, "sells_per_second": %.1f, "cpu_us": %.2f})"
                "\n",
        name, threads, receipts / seconds, (processorSeconds() - processor) / receipts * 1e6);
}

void measureThreads(int rounds, int milliseconds)
{
    const Responder responder(Responder::Wire::Plain);
    const std::chrono::milliseconds length(milliseconds);
    for (int i = 0; i < rounds; ++i) {
        for (const int threads : {1, 5, 20, 100}) {
            sellInThreads("ours", make<Device>, threads, length, responder.endpoint());
            sellInThreads("curl", make<CurlQJson>, threads, length, responder.endpoint());
        }
    }
}

// The first exchanges of a register are mostly waits.
constexpr int makersOfMany = 25;

// Resident memory and open files of one process with so many registers, each of which has sold once and has
// been idle since. The first tenth is not counted: it takes what is needed once.
void collectMany(int count)
{
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
    const Responder responder(Responder::Wire::Plain);
    std::vector<std::unique_ptr<Device>> devices(static_cast<std::size_t>(count));
    std::atomic<std::size_t> next = 0;
    const auto makeUpTo = [&](std::size_t end) {
        std::vector<std::jthread> makers(makersOfMany);
        for (std::jthread& maker : makers) {
            maker = std::jthread([&] {
                for (std::size_t i = next++; i < end; i = next++) {
                    devices[i] = std::make_unique<Device>(responder.endpoint(), linesOfSale);
                    sell("many", *devices[i]);
                }
            });
        }
        makers.clear();
        next = end;
    };
    const std::size_t first = devices.size() / 10;
    makeUpTo(first);
    std::this_thread::sleep_for(longestIdle);
    const int filesBefore = openFiles();
    const long memory = residentKilobytes();
    const auto allocated = mallinfo2().uordblks;
    makeUpTo(devices.size());
    const int filesInUse = openFiles();
    std::this_thread::sleep_for(longestIdle);
    std::printf(R"({"kb_each": %.3f, "kb_allocated": %.3f, "files": %d, "files_when_idle": %d})"
                "\n",
        static_cast<double>(residentKilobytes() - memory) / static_cast<double>(devices.size() - first),
        static_cast<double>(mallinfo2().uordblks - allocated) / 1024 /
            static_cast<double>(devices.size() - first),
        filesInUse - filesBefore, openFiles() - filesBefore);
}

// Resident memory and open files after a warm-up and at the end.
void soak(int receipts)
{
    const Responder responder(Responder::Wire::Plain);
    Device device(responder.endpoint(), linesOfSale);
    requireGoldenSale("soak", device, responder.endpoint(), linesOfSale);
    const auto sellAll = [&](int count) {
        for (int i = 0; i < count; ++i)
            sell("soak", device);
    };
    // The first times, reading the figures takes pages too.
    for (int i = 0; i < 4; ++i) {
        sellAll(receipts / 80);
        std::ignore = residentKilobytes();
        std::ignore = openFiles();
    }
    const int files = openFiles();
    const long memory = residentKilobytes();
    sellAll(receipts);
    const long memoryAtEnd = residentKilobytes();
    std::printf(R"({"rss_growth_kb": %ld, "files_growth": %d})"
                "\n",
        memoryAtEnd - memory, openFiles() - files);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    quietLog();
    const std::string_view mode = argc > 1 ? argv[1] : "";
    if (mode == "threads" && argc == 4)
        measureThreads(std::stoi(argv[2]), std::stoi(argv[3]));
    else if (mode == "many" && argc == 3)
        collectMany(std::stoi(argv[2]));
    else if (mode == "soak" && argc == 3)
        soak(std::stoi(argv[2]));
    else {
        std::fputs("usage: registersbench threads ROUNDS MILLISECONDS\n"
                   "       registersbench many REGISTERS\n"
                   "       registersbench soak RECEIPTS\n",
            stderr);
        return EXIT_FAILURE;
    }
}
