#pragma once

#include <string>

namespace emulator {

/// Files in PEM format for a server that speaks TLS; both empty for one that does not.
struct TlsFiles
{
    std::string certificateChain{};
    std::string privateKey{};
};

} // namespace emulator
