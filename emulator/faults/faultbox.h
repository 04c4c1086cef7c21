#pragma once

#include "emulator/faults/fault.h"
#include "emulator/protocol/call.h"

#include <string_view>
#include <vector>

namespace emulator {

/// Whether `text` fits `pattern`, in which `*` is any run of characters and `?` any one, of UTF-8 both.
[[nodiscard]] bool fits(std::string_view text, std::string_view pattern);

/// The faults in force, in the order they were set. The first that matches a call hits it.
class FaultBox
{
public:
    /// Gives the fault its id.
    const Fault& add(Fault fault);
    bool remove(int id);
    void clear() { faults.clear(); }
    [[nodiscard]] const std::vector<Fault>& all() const { return faults; }

    /// The fault that hits this call, counted as a hit; null when none does. Valid until the next change.
    [[nodiscard]] const Fault* take(const Call& call);
    /// The fault made no difference to the call that it hit, so it was no hit.
    void spare(const Fault& fault);

private:
    std::vector<Fault> faults;
    int lastId = 0;
};

} // namespace emulator
