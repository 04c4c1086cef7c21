#include "emulator/http/jsonreply.h"

namespace emulator {

Reply jsonReply(const int status, const Json& body)
{
    return {.status = status, .body = toLine(body)};
}

} // namespace emulator
