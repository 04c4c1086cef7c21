#include "emulator/emulator.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

int main(int argc, char** argv)
{
    emulator::Options options;
    emulator::Group& group = options.groups.front();
    emulator::User& user = options.users.front();
    long long tokenLife = options.tokenLife.count();

    CLI::App app("fremulator: the cloud fiscalisation service, imitated on loopback.\n"
                 "Example: fremulator --port 8080 --login shop --password secret --group shop_1");
    app.add_option("--port", options.port, "TCP port on 127.0.0.1; 0 takes a free one")
        ->capture_default_str();
    app.add_option("--login", user.login, "login that gets a token")->capture_default_str();
    app.add_option("--password", user.password, "its password")->capture_default_str();
    app.add_option("--group", group.code, "code of the group of registers")->capture_default_str();
    app.add_option("--waits", options.waits, "status answers \"not processed yet\" before the result")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    app.add_option("--token-ttl", tokenLife, "seconds that a token lives")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);

    options.tokenLife = std::chrono::seconds(tokenLife);
    user.groups = {group.code};
    try {
        emulator::Emulator emulator(options);
        emulator.server().stopOnSignals();
        std::cout << "listening on " << emulator.url() << std::endl;
        emulator.server().run();
    } catch (const std::exception& error) {
        std::cerr << "fremulator: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
