#pragma once

#include "bench/support/endpoint.h"

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

// Each compares everything that it is going to time with the golden texts and adds it to what Google
// Benchmark runs.

/// receipt/CONTENDER/WIRE/LINES: a whole receipt.
void addReceipts(const std::string& wire, const Endpoint& endpoint);
/// compose/CONTENDER/LINES: a receipt's lines to the text that is posted.
void addComposer();
/// reply/CONTENDER/BYTES: the body of an answer to what the driver keeps of it.
void addReplies();

template <typename Work>
benchmark::internal::Benchmark* add(const std::string& name, Work work)
{
    return benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(work());
    });
}

} // namespace bench
