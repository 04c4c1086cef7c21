#pragma once

#include "emulator/faults/fault.h"
#include "emulator/protocol/call.h"

#include <cstddef>
#include <span>
#include <vector>

namespace emulator {

/// The active faults in the order in which they were added. The first one that matches a call hits it.
class FaultBox
{
public:
    /// How many faults there can be. Every call is compared with every fault.
    static constexpr std::size_t most = 1000;

    /// Adds all and sets their ids, or throws JsonError if that would be too many. Returns what was added,
    /// valid until the next change.
    std::span<const Fault> add(const std::vector<Fault>& wanted);
    bool remove(int id);
    void clear() { faults.clear(); }
    [[nodiscard]] const std::vector<Fault>& all() const { return faults; }

    /// The fault that hits this call, null if none does. Counts the hit. Valid until the next change.
    [[nodiscard]] const Fault* take(const Call& call);
    /// Takes back a hit that made no difference to the call.
    void uncount(const Fault& fault);

private:
    std::vector<Fault> faults;
    int lastId = 0;
};

} // namespace emulator
