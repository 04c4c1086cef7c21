#pragma once

#include <benchmark/benchmark.h>

namespace bench {

/// Counts allocations and the peak of bytes held between Start and Stop. Linking it replaces malloc and its
/// kin in the program; outside of a count they cost one look at a flag more.
class HeapCount : public benchmark::MemoryManager
{
public:
    void Start() override;
    void Stop(Result* result) override;
    using benchmark::MemoryManager::Stop;
};

} // namespace bench
