#include "tests/emulator/support/running.h"

using emulator::Json;

RunningEmulator::RunningEmulator()
    : now(std::chrono::milliseconds(std::chrono::sys_days(std::chrono::year(2026) / 3 / 1).time_since_epoch())
              .count())
{
    options.service.groups = {{.code = "group-1"}};
    options.service.users = {{.login = "shop", .password = "secret", .groups = {"group-1"}}};
}

RunningEmulator::~RunningEmulator()
{
    stop();
}

void RunningEmulator::start()
{
    stop();
    running = std::make_unique<emulator::Emulator>(
        options, [this] { return emulator::TimePoint(std::chrono::milliseconds(now)); });
    thread = std::thread([this] { running->server().run(); });
}

void RunningEmulator::stop()
{
    if (!running)
        return;
    running->server().stop();
    thread.join();
    running.reset();
}

RawClient::Answer RunningEmulator::exchange(const std::string& request) const
{
    RawClient client(port());
    client.send(request);
    return client.receive();
}

void RunningEmulator::takeToken()
{
    const Json answer = post(base + std::string("getToken"), {{"login", "shop"}, {"pass", "secret"}}).json();
    currentToken = answer["token"].get<std::string>();
}

RawClient::Answer RunningEmulator::sell(const Json& body) const
{
    return exchange(postRequest(base + std::string("group-1/sell"), body.dump(), tokenHeader()));
}

RawClient::Answer RunningEmulator::report(const std::string& uuid) const
{
    return exchange(getRequest(base + std::string("group-1/report/") + uuid, tokenHeader()));
}
