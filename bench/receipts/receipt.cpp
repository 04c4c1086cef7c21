#include "bench/baselines/curlqjson.h"
#include "bench/baselines/php.h"
#include "bench/baselines/qnam.h"
#include "bench/baselines/rawsocket.h"
#include "bench/ours/device.h"
#include "bench/ours/linkeddriver.h"
#include "bench/receipts/benchmarks.h"
#include "bench/support/golden.h"

namespace bench {

namespace {

// Our transport waits before a POST until a connection has lasted for three exchanges.
constexpr int warmUp = 3;
constexpr int phpBatch = 20;
constexpr int phpBatches = 10;

struct Named
{
    const char* name;
    Maker maker;
};

constexpr Named contenders[] = {
    {"plugin", make<Device>},
    {"driver", make<LinkedDriver>},
    {"curl", make<CurlQJson>},
    {"qnam", make<Qnam>},
    {"raw", make<RawSocket>},
};

std::string title(const char* contender, const std::string& wire, int lines)
{
    return std::string("receipt/") + contender + '/' + wire + '/' + std::to_string(lines);
}

void addPhp(const std::string& wire, const Endpoint& endpoint, int lines)
{
    const auto php = std::make_shared<Php>(endpoint, lines);
    requireGoldenSale("php", *php, endpoint, lines);
    benchmark::RegisterBenchmark(title("php", wire, lines).c_str(),
        [php](benchmark::State& state) {
            for (auto _ : state)
                state.SetIterationTime(php->secondsOf(phpBatch) / phpBatch);
        })
        ->UseManualTime()
        ->Iterations(phpBatches);
}

} // namespace

void addReceipts(const std::string& wire, const Endpoint& endpoint)
{
    static const bool hasPhp = Php::isInstalled();
    for (const int lines : {1, 10, 100}) {
        for (const Named& named : contenders) {
            const std::shared_ptr<Contender> contender = named.maker(endpoint, lines);
            requireGoldenSale(named.name, *contender, endpoint, lines);
            for (int i = 0; i < warmUp; ++i)
                contender->registerSale();
            add(title(named.name, wire, lines), [contender] {
                return contender->registerSale();
            })->UseRealTime();
        }
        if (hasPhp)
            addPhp(wire, endpoint, lines);
    }
}

} // namespace bench
