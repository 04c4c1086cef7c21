#include "emulator/faults/faultbox.h"

#include "emulator/values/jsonreader.h"
#include "emulator/values/pattern.h"

#include <algorithm>

namespace emulator {

std::span<const Fault> FaultBox::add(const std::vector<Fault>& wanted)
{
    if (faults.size() + wanted.size() > most)
        std::erase_if(faults, [](const Fault& fault) { return fault.spent(); });
    if (faults.size() + wanted.size() > most)
        throw JsonError("at most " + std::to_string(most) + " faults are kept, and there are " +
                        std::to_string(faults.size()) + " already; delete some first");
    for (const Fault& fault : wanted) {
        faults.push_back(fault);
        faults.back().id = ++lastId;
    }
    return std::span(faults).last(wanted.size());
}

bool FaultBox::remove(int id)
{
    return std::erase_if(faults, [id](const Fault& fault) { return fault.id == id; }) > 0;
}

const Fault* FaultBox::take(const Call& call)
{
    const auto agrees = [](const std::string& wanted, const std::string& given) {
        return wanted.empty() || wanted == given;
    };
    for (Fault& fault : faults) {
        if (fault.endpoint != call.endpoint || fault.spent() || !agrees(fault.login, call.login) ||
            !agrees(fault.group, call.group))
            continue;
        if (!fault.externalId.empty() && !matches(call.externalId, fault.externalId))
            continue;
        ++fault.matched;
        if (fault.matched <= fault.after || (fault.matched - fault.after) % fault.every != 0)
            continue;
        ++fault.hits;
        return &fault;
    }
    return nullptr;
}

void FaultBox::uncount(const Fault& fault)
{
    const auto found = std::ranges::find(faults, fault.id, &Fault::id);
    if (found != faults.end())
        --found->hits;
}

} // namespace emulator
