#pragma once

#include <string>

namespace emulator {

/// PEM files for a server that speaks TLS; both empty if it does not.
struct TlsFiles
{
    std::string certificateChain{};
    std::string privateKey{};
};

} // namespace emulator
