#include "emulator/emulator.h"

namespace emulator {

namespace {

std::string root(const Server& server)
{
    return "http://127.0.0.1:" + std::to_string(server.port()) + "/";
}

} // namespace

Emulator::Emulator(const Options& options, Clock clock)
    : store_(options.database)
    , service_(options, store_, std::move(clock))
    , server_(options.port, [this](const Request& request) { return service_.answer(request); })
{
    service_.setAddress(root(server_));
}

std::string Emulator::url() const
{
    return root(server_) + std::string(basePath.substr(1));
}

} // namespace emulator
