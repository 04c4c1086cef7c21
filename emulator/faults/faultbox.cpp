#include "emulator/faults/faultbox.h"

#include <algorithm>
#include <optional>

namespace emulator {

namespace {

std::size_t nextCharacter(std::string_view text, std::size_t at)
{
    for (++at; at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;)
        ++at;
    return at;
}

} // namespace

bool matches(std::string_view text, std::string_view pattern)
{
    std::size_t t = 0;
    std::size_t p = 0;
    std::optional<std::size_t> star;
    std::size_t afterStar = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            afterStar = t;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            t = nextCharacter(text, t);
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star) {
            p = *star + 1;
            afterStar = nextCharacter(text, afterStar);
            t = afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

const Fault& FaultBox::add(Fault fault)
{
    fault.id = ++lastId;
    return faults.emplace_back(std::move(fault));
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
