#pragma once

#include "emulator/faults/fault.h"
#include "emulator/protocol/call.h"

#include <string_view>
#include <vector>

namespace emulator {

/// Whether `text` matches `pattern`, where `*` stands for any characters and `?` for any single one. Both are
/// UTF-8.
[[nodiscard]] bool matches(std::string_view text, std::string_view pattern);

/// The active faults in the order in which they were added. The first one that matches a call hits it.
class FaultBox
{
public:
    /// Sets the fault's id.
    const Fault& add(Fault fault);
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
