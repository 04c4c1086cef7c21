// What one receipt costs ours, the equal work and a bare socket, with one register and with twenty at once.
// Prints a line of JSON for each round of each case; under callgrind, dumps the instructions of each round
// too.

#include "bench/baselines/equalwork.h"
#include "bench/baselines/rawsocket.h"
#include "bench/ours/device.h"
#include "bench/support/child.h"
#include "bench/support/cores.h"
#include "bench/support/golden.h"
#include "bench/support/process.h"
#include "bench/support/quietlog.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <latch>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <valgrind/callgrind.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace bench;
using Clock = std::chrono::steady_clock;

// Our transport waits before a POST until a connection has lasted for three exchanges.
constexpr int warmUp = 3;

struct Work
{
    std::string wanted;
    int rounds;
    int receipts;
};

// The registers of one contender, each in a thread of its own.
class Registers
{
public:
    Registers(const char* contenderName, Maker maker, const Endpoint& endpoint, int lines, int count)
        : name(contenderName)
    {
        for (int i = 0; i < count; ++i)
            contenders.push_back(maker(endpoint, lines));
        requireGoldenSale(name, *contenders.front(), endpoint, lines);
    }

    void sell(const std::string& title, int receipts)
    {
        std::latch ready(std::ssize(contenders) + 1);
        std::latch start(1);
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            threads.emplace_back([&, &mine = *contenders[i], buyer = buyers + (std::int64_t(i) << 32)] {
                sellBy(mine, buyer, warmUp);
                ready.count_down();
                start.wait();
                sellBy(mine, buyer + warmUp, receipts);
            });
        }
        buyers += warmUp + receipts;
        // Outlives the macro, whose statements would outlive a temporary.
        const std::string mark = std::string(name) + '/' + title;
        ready.arrive_and_wait();
        CALLGRIND_START_INSTRUMENTATION;
        // What is dumped later counts from here: the start of the instrumentation has left counters behind.
        CALLGRIND_DUMP_STATS_AT("begin");
        const double processor = processorSeconds();
        const auto begin = Clock::now();
        start.count_down();
        threads.clear();
        const std::chrono::duration<double> wall = Clock::now() - begin;
        const double sold = static_cast<double>(contenders.size()) * receipts;
        const double used = processorSeconds() - processor;
        CALLGRIND_DUMP_STATS_AT(mark.c_str());
        CALLGRIND_STOP_INSTRUMENTATION;
        std::printf(R"({"contender": "%s", "case": "%s", "receipts": %.0f, "wall_us": %.3f, "cpu_us": %.3f})"
                    "\n",
            name, title.c_str(), sold, wall.count() / sold * 1e6, used / sold * 1e6);
    }

private:
    void sellBy(Contender& contender, std::int64_t firstBuyer, int receipts) const
    {
        for (int i = 0; i < receipts; ++i) {
            contender.setBuyer(firstBuyer + i);
            require(name, contender.registerSale() == goldenSign, u"another answer"_s);
        }
    }

    const char* name;
    std::vector<std::unique_ptr<Contender>> contenders;
    std::int64_t buyers = 0;
};

void measure(const std::string& wire, const Endpoint& endpoint, int count, const Work& work)
{
    std::minstd_rand random;
    for (const int lines : {1, 10, 100}) {
        const std::string title = wire + '/' + std::to_string(lines) + '/' + std::to_string(count);
        if (title.find(work.wanted) == std::string::npos)
            continue;
        std::vector<Registers> contenders;
        contenders.emplace_back("ours", make<Device>, endpoint, lines, count);
        contenders.emplace_back("equal", make<EqualWork>, endpoint, lines, count);
        contenders.emplace_back("raw", make<RawSocket>, endpoint, lines, count);
        for (int round = 0; round < work.rounds; ++round) {
            std::shuffle(contenders.begin(), contenders.end(), random);
            for (Registers& each : contenders)
                each.sell(title, std::max(1, work.receipts / count));
        }
    }
}

void measure(int count, Child::Core core, const Work& work)
{
    const Responder plain(Responder::Wire::Plain, core);
    measure("plain", plain.endpoint(), count, work);
    const Responder tls(Responder::Wire::Tls, core);
    measure("tls", tls.endpoint(), count, work);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 4) {
        std::fputs("usage: equalbench ROUNDS RECEIPTS [PART OF A CASE]\n", stderr);
        return EXIT_FAILURE;
    }
    const QCoreApplication application(argc, argv);
    quietLog();
    const Work work{argc > 3 ? argv[3] : "", std::stoi(argv[1]), std::stoi(argv[2])};
    measure(20, Child::Core::Any, work);
    stayOnCore(0);
    measure(1, Child::Core::OfItsOwn, work);
}
