#include "emulator/http/answer.h"

#include <algorithm>

namespace emulator {

std::string Answer::bytes(bool keepAlive) const
{
    if (wire.send == Wire::Send::Nothing)
        return {};
    const auto length = static_cast<long long>(reply.body.size()) + wire.lengthError;
    const std::string start = head(reply, static_cast<std::size_t>(std::max(0LL, length)), keeps(keepAlive));
    const bool half = wire.send == Wire::Send::HeadAndHalfTheBody;
    return start + reply.body.substr(0, half ? reply.body.size() / 2 : std::string::npos);
}

} // namespace emulator
