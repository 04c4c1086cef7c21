#include "emulator/config.h"
#include "emulator/emulator.h"
#include "emulator/russianhelp.h"
#include "reference/reference.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <exception>
#include <iostream>
#include <iterator>
#include <string_view>
#include <sys/resource.h>

namespace {

using emulator::Options;

std::chrono::milliseconds milliseconds(double seconds)
{
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

struct Arguments
{
    std::uint16_t port = 0;
    std::string login = "test";
    std::string password = "test";
    std::string passwordFile;
    std::string group = "test";
    std::string config;
    std::string faults;
    std::string database;
    std::vector<double> latency;
    int waits = 0;
    double tokenLife = 24 * 60 * 60;
    double queueTimeout = 300;
    bool pace = false;
    std::string revision;
    bool strict = false;
    std::int64_t keep = Options().keep;
    std::vector<std::string> allowedHosts;
    bool allowCallbacks = false;
    std::string replay;
    emulator::TlsFiles tls;
};

// An empty argument usually comes from an unset shell variable.
const CLI::Validator notEmpty(
    [](const std::string& text) { return text.empty() ? std::string("must not be empty") : std::string(); },
    "");

void addContentOptions(CLI::App& app, Arguments& a)
{
    app.add_option("--port", a.port, "TCP port on 127.0.0.1; 0 means any free one")->capture_default_str();
    auto* config = app.add_option("--config", a.config, "JSON file with groups, users, lists and faults");
    config->type_name("FILE")->check(notEmpty);
    auto* password = app.add_option("--password", a.password, "password of the user");
    for (auto* option : {app.add_option("--login", a.login, "login of the user"), password,
             app.add_option("--group", a.group, "code of the group of registers")})
        option->capture_default_str()->check(notEmpty)->excludes(config);
    app.add_option("--password-file", a.passwordFile, "file with the password on its first line")
        ->type_name("FILE")
        ->check(notEmpty)
        ->excludes(config)
        ->excludes(password);
    app.add_option("--db", a.database, "SQLite file for the state; without it, the state is kept in memory")
        ->type_name("FILE")
        ->check(notEmpty);
    app.add_option("--keep", a.keep, "how many of the newest documents to keep")
        ->check(CLI::Range(std::int64_t{1}, std::int64_t{1'000'000'000}))
        ->capture_default_str();
    app.add_option("--faults", a.faults, "JSON file with an array of faults")
        ->type_name("FILE")
        ->check(notEmpty);
}

void addRuleOptions(CLI::App& app, Arguments& a)
{
    std::vector<std::string> names;
    for (const emulator::RevisionName& row : emulator::revisions)
        names.emplace_back(row.name);
    app.add_option("--revision", a.revision,
           "revision of the service's description whose rules apply: 2025-12 (the default) or 2023-05 (the "
           "default with --strict)")
        ->check(CLI::IsMember(names));
    app.add_flag(
        "--strict", a.strict, "refuse what the service takes although its description does not allow it");
}

emulator::Edition editionOf(const Arguments& a)
{
    const auto* named = std::ranges::find(emulator::revisions, a.revision, &emulator::RevisionName::name);
    const bool given = named != std::end(emulator::revisions);
    const emulator::Revision usual = a.strict ? emulator::Revision::May2023 : emulator::newestRevision;
    return {.revision = given ? named->revision : usual, .strict = a.strict};
}

void addTimingOptions(CLI::App& app, Arguments& a)
{
    app.add_option("--waits", a.waits, "how many \"not processed yet\" status answers precede the result")
        ->check(CLI::Range(0, 1'000'000))
        ->capture_default_str();
    app.add_option("--latency", a.latency, "seconds that a register takes for a receipt: S or MIN,MAX")
        ->delimiter(',')
        ->expected(1, 2)
        ->check(CLI::Range(0.0, 86400.0));
    app.add_option(
           "--queue-timeout", a.queueTimeout, "seconds that a receipt waits for a register before it fails")
        ->check(CLI::Range(0.0, 86400.0))
        ->capture_default_str();
    app.add_flag("--pace", a.pace, "refuse status calls of a group beyond one per second and register");
    app.add_option("--token-ttl", a.tokenLife, "lifetime of a token in seconds")
        ->check(CLI::Range(0.0, 1e9))
        ->capture_default_str();
}

void addAccessOptions(CLI::App& app, Arguments& a)
{
    app.add_option("--allow-host", a.allowedHosts, "another name to permit in the Host header")
        ->check(notEmpty);
    app.add_flag("--allow-callbacks", a.allowCallbacks,
        "call callback_url of finished receipts, on this machine only");
    auto* certificate = app.add_option(
        "--tls-cert", a.tls.certificateChain, "PEM file with the certificate chain; enables TLS");
    auto* key = app.add_option("--tls-key", a.tls.privateKey, "PEM file with the key of --tls-cert");
    certificate->type_name("FILE")->needs(key)->check(notEmpty);
    key->type_name("FILE")->needs(certificate)->check(notEmpty);
}

// The recording decides what is answered, and to whom.
void addReplayOption(CLI::App& app, Arguments& a)
{
    auto* replay = app.add_option(
        "--replay", a.replay, "answer from a recording: a HAR, or the JSON lines of /_emulator/recording");
    replay->type_name("FILE")->check(notEmpty);
    for (const char* other : {"--config", "--login", "--password", "--password-file", "--group", "--faults",
             "--waits", "--latency", "--queue-timeout", "--pace", "--revision", "--strict", "--token-ttl",
             "--allow-callbacks"})
        replay->excludes(app.get_option(other));
}

std::string passwordIn(const std::string& file)
{
    if (emulator::othersMayRead(file))
        std::cerr << "fremulator: warning: others can read " << file << "; to prevent this: chmod 600 "
                  << file << '\n';
    return emulator::readPassword(file);
}

Options toOptions(const Arguments& a)
{
    Options options;
    emulator::ServiceOptions& service = options.service;
    options.port = a.port;
    service.edition = editionOf(a);
    service.lists = emulator::listsOf(service.edition.revision);
    service.groups = {{.code = a.group}};
    const std::string password = a.passwordFile.empty() ? a.password : passwordIn(a.passwordFile);
    service.users = {{.login = a.login, .password = password, .groups = {a.group}}};
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
    options.replay = a.replay;
    if (a.allowCallbacks)
        options.callbacks.emplace();
    return options;
}

// A thousand connections at once exceed the usual soft limit.
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
    CLI::App app("fremulator: an emulator of the cloud fiscalisation service on loopback.\n"
                 "Example: fremulator --port 8080 --login shop --password secret --group shop_1",
        "fremulator");
    Arguments arguments;
    addContentOptions(app, arguments);
    addRuleOptions(app, arguments);
    addTimingOptions(app, arguments);
    addAccessOptions(app, arguments);
    addReplayOption(app, arguments);
    app.set_version_flag("--version", "fremulator " FREMULATOR_VERSION, "print the version");
    if (wantsRussian())
        helpInRussian(app);
    // For the build, which makes man page and completions of it.
    if (argc == 3 && std::string_view(argv[1]) == "--reference") {
        std::cout << reference::made(app, argv[2]);
        return 0;
    }
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
