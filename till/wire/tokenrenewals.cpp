#include "till/wire/tokenrenewals.h"

namespace till {

using namespace std::chrono_literals;

TokenRenewals::Pauses TokenRenewals::usualPauses()
{
    return {0ms, 1s, 2s, 4s};
}

void TokenRenewals::forget()
{
    count = 0;
    isRejected = false;
}

std::optional<std::chrono::milliseconds> TokenRenewals::next()
{
    if (!isRejected)
        return 0ms;
    if (areExhausted())
        return std::nullopt;
    isRejected = false;
    return pauses[count++];
}

} // namespace till
