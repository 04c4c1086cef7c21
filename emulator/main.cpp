#include "emulator/config.h"
#include "emulator/emulator.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <exception>
#include <iostream>
#include <sys/resource.h>

namespace {

using emulator::Options;

std::chrono::milliseconds milliseconds(double seconds)
{
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

/// What the command line says, before it becomes options.
struct Arguments
{
    std::uint16_t port = 0;
    std::string login = "test";
    std::string password = "test";
    std::string group = "test";
    std::string config;
    std::string faults;
    std::string database;
    std::vector<double> latency;
    int waits = 0;
    double tokenLife = 24 * 60 * 60;
    double queueTimeout = 300;
    bool pace = false;
    std::int64_t keep = Options().keep;
    std::vector<std::string> allowedHosts;
    emulator::TlsFiles tls;
};

void describe(CLI::App& app, Arguments& a)
{
    app.add_option("--port", a.port, "TCP port on 127.0.0.1; 0 takes a free one")->capture_default_str();
    auto* config = app.add_option("--config", a.config, "JSON file with groups, users, lists and faults");
    for (auto* option : {app.add_option("--login", a.login, "login that gets a token"),
             app.add_option("--password", a.password, "its password"),
             app.add_option("--group", a.group, "code of the group of registers")})
        option->capture_default_str()->excludes(config);
    app.add_option("--db", a.database, "SQLite file that keeps the state; without it, memory does");
    app.add_option("--keep", a.keep, "newest documents that are kept")
        ->check(CLI::Range(std::int64_t{1}, std::int64_t{1'000'000'000}))
        ->capture_default_str();
    app.add_option("--faults", a.faults, "JSON file with an array of faults");
    app.add_option("--waits", a.waits, "status answers \"not processed yet\" before the result")
        ->check(CLI::Range(0, 1'000'000))
        ->capture_default_str();
    app.add_option("--latency", a.latency, "seconds that a register takes for a receipt, or MIN,MAX of them")
        ->delimiter(',')
        ->expected(1, 2)
        ->check(CLI::Range(0.0, 86400.0));
    app.add_option("--queue-timeout", a.queueTimeout, "seconds that a receipt waits for a register at most")
        ->check(CLI::Range(0.0, 86400.0))
        ->capture_default_str();
    app.add_flag(
        "--pace", a.pace, "tell off a group that asks for status more than once a second per register");
    app.add_option("--token-ttl", a.tokenLife, "seconds that a token lives")
        ->check(CLI::Range(0.0, 1e9))
        ->capture_default_str();
    app.add_option("--allow-host", a.allowedHosts, "further name that a Host header may hold");
    auto* certificate = app.add_option("--tls-cert", a.tls.certificateChain, "PEM file; speak TLS with it");
    auto* key = app.add_option("--tls-key", a.tls.privateKey, "PEM file with the key of --tls-cert");
    certificate->needs(key);
    key->needs(certificate);
}

Options toOptions(const Arguments& a)
{
    Options options;
    emulator::ServiceOptions& service = options.service;
    options.port = a.port;
    service.groups = {{.code = a.group}};
    service.users = {{.login = a.login, .password = a.password, .groups = {a.group}}};
    if (!a.config.empty())
        emulator::readConfig(a.config, options);
    if (!a.faults.empty())
        emulator::readFaults(a.faults, options);
    if (!a.database.empty())
        options.database = a.database;
    if (!a.latency.empty()) {
        service.latencyLow = milliseconds(a.latency.front());
        service.latencyHigh = std::max(service.latencyLow, milliseconds(a.latency.back()));
    }
    service.waits = a.waits;
    service.tokenLife = milliseconds(a.tokenLife);
    service.queueTimeout = milliseconds(a.queueTimeout);
    service.pace = a.pace;
    options.keep = a.keep;
    options.allowedHosts = a.allowedHosts;
    options.tls = a.tls;
    return options;
}

/// A thousand connections at once are more than the usual soft limit of descriptors lets in.
void raiseDescriptorLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app("fremulator: the cloud fiscalisation service, imitated on loopback.\n"
                 "Example: fremulator --port 8080 --login shop --password secret --group shop_1");
    Arguments arguments;
    describe(app, arguments);
    CLI11_PARSE(app, argc, argv);
    raiseDescriptorLimit();
    try {
        emulator::Emulator emulator(toOptions(arguments));
        emulator.server().stopOnSignals();
        std::cout << "listening on " << emulator.url() << "\npage at " << emulator.pageUrl() << std::endl;
        emulator.server().run();
    } catch (const std::exception& error) {
        std::cerr << "fremulator: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
