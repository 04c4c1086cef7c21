#include "emulator/http/jsonreply.h"

namespace emulator {

Reply jsonReply(int status, const Json& body)
{
    return {.status = status, .body = toLine(body)};
}

} // namespace emulator
