#include "tests/emulator/support/goodreceipt.h"
#include "tests/emulator/support/program.h"
#include "tests/emulator/support/rawclient.h"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <list>
#include <netinet/in.h>
#include <poll.h>
#include <set>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using emulator::Json;

TEST(Program, PrintsItsAddressAndAppliesItsOptions)
{
    Program program({"--port", "0", "--login", "l", "--password", "p", "--group", "g", "--waits", "1"});
    const std::uint16_t port = portIn(program.line());

    RawClient client(port);
    client.send(postRequest("/possystem/v4/getToken", R"({"login":"l","pass":"p"})"));
    const std::string token = "Token: " + client.receive().json()["token"].get<std::string>() + "\r\n";
    client.send(postRequest("/possystem/v4/g/sell", goodReceipt().dump(), token));
    const std::string uuid = client.receive().json()["uuid"];
    client.send(getRequest("/possystem/v4/g/report/" + uuid, token));
    EXPECT_EQ(client.receive().json()["status"], "wait");
    client.send(getRequest("/possystem/v4/g/report/" + uuid, token));
    EXPECT_EQ(client.receive().json()["status"], "done");

    EXPECT_EQ(program.finish(SIGTERM), 0);
}

TEST(Program, AppliesTheRulesOfTheRevision)
{
    struct Row
    {
        std::vector<std::string> arguments;
        bool namesOfTheNewer;
        bool mild;
    };
    const Row rows[] = {{{}, true, true}, {{"--revision", "2025-12"}, true, true},
        {{"--revision", "2023-05"}, false, false}, {{"--strict"}, false, false},
        {{"--strict", "--revision", "2025-12"}, true, false}};
    for (const Row& row : rows) {
        Program program(row.arguments);
        RawClient client(portIn(program.line()));
        client.send(postRequest("/possystem/v4/getToken", R"({"login":"test","pass":"test"})"));
        const std::string token = "Token: " + client.receive().json()["token"].get<std::string>() + "\r\n";
        const auto accepts = [&](const std::string& id, const std::string& pointer, const Json& value) {
            const Json body = changed(goodReceipt(id), pointer, value);
            client.send(postRequest("/possystem/v4/test/sell", body.dump(), token));
            return client.receive().status == 200;
        };
        const std::string of = testing::PrintToString(row.arguments);
        EXPECT_EQ(accepts("1", "/receipt/items/0/vat/type", "vat22"), row.namesOfTheNewer) << of;
        EXPECT_EQ(accepts("2", "/receipt/company/email", "absent"), row.mild) << of;
        EXPECT_TRUE(accepts("3", "/receipt/company/sno", "osn")) << of;
    }
    EXPECT_GT(runToTheEnd("--revision 2024-01").status, 1);
}

TEST(Program, AppliesTheTokenLifetime)
{
    Program program({"--token-ttl", "0"});
    RawClient client(portIn(program.line()));
    client.send(postRequest("/possystem/v4/getToken", R"({"login":"test","pass":"test"})"));
    const std::string token = "Token: " + client.receive().json()["token"].get<std::string>() + "\r\n";
    client.send(postRequest("/possystem/v4/test/sell", goodReceipt().dump(), token));
    EXPECT_EQ(client.receive().json()["error"]["code"], 11);
}

TEST(Program, ExitsCleanlyOnInterruptWithOpenConnections)
{
    Program program({});
    const RawClient idle(portIn(program.line()));
    EXPECT_EQ(program.finish(SIGINT), 0);
}

TEST(Program, FailsIfThePortIsTaken)
{
    Program first({});
    const std::uint16_t port = portIn(first.line());
    Program second({"--port", std::to_string(port)});
    EXPECT_EQ(second.line(), "");
    EXPECT_EQ(second.finish(0), 1);
}

TEST(Program, KeepsItsStateWhenKilled)
{
    const std::string database = testing::TempDir() + "fremulator-kill-" + std::to_string(::getpid()) + ".db";
    std::string token;
    std::string uuid;
    {
        Program program({"--db", database});
        RawClient client(portIn(program.line()));
        client.send(postRequest("/possystem/v4/getToken", R"({"login":"test","pass":"test"})"));
        token = "Token: " + client.receive().json()["token"].get<std::string>() + "\r\n";
        client.send(postRequest("/possystem/v4/test/sell", goodReceipt().dump(), token));
        uuid = client.receive().json()["uuid"];
        EXPECT_EQ(program.finish(SIGKILL), -SIGKILL);
    }
    Program program({"--db", database});
    RawClient client(portIn(program.line()));
    client.send(getRequest("/possystem/v4/test/report/" + uuid, token));
    EXPECT_EQ(client.receive().json()["status"], "done");
    client.send(postRequest("/possystem/v4/test/sell", goodReceipt().dump(), token));
    EXPECT_EQ(client.receive().json()["uuid"], uuid);
    for (const char* suffix : {"", "-wal", "-shm"})
        std::remove((database + suffix).c_str());
}

TEST(Program, SharesItsDatabaseWithNoOther)
{
    const std::string database = testing::TempDir() + "fremulator-lock-" + std::to_string(::getpid()) + ".db";
    {
        Program first({"--db", database});
        EXPECT_THAT(first.line(), testing::StartsWith("listening"));
        const Ending second = runToTheEnd("--db '" + database + "'");
        EXPECT_EQ(second.status, 1);
        EXPECT_EQ(second.output, "fremulator: cannot use " + database + ": another fremulator is using it\n");
        EXPECT_EQ(first.finish(SIGKILL), -SIGKILL);
    }
    Program again({"--db", database});
    EXPECT_THAT(again.line(), testing::StartsWith("listening"));
    for (const char* suffix : {"", "-wal", "-shm"})
        std::remove((database + suffix).c_str());
}

TEST(Program, RefusesEmptyArguments)
{
    for (const std::string option : {"--db", "--config", "--faults", "--password-file", "--login",
             "--password", "--group", "--allow-host", "--replay", "--tls-cert", "--tls-key"}) {
        const Ending ending = runToTheEnd(option + " ''");
        EXPECT_GT(ending.status, 1) << option;
        EXPECT_THAT(ending.output, testing::StartsWith(option + ": must not be empty"));
        EXPECT_GT(runToTheEnd(option + "=").status, 1) << option;
    }
}

TEST(Program, ReadsThePasswordFromAFile)
{
    const std::string file = testing::TempDir() + "fremulator-password-" + std::to_string(::getpid());
    std::ofstream(file) << "from the file\n";
    {
        Program program({"--password-file", file});
        RawClient client(portIn(program.line()));
        client.send(postRequest("/possystem/v4/getToken", R"({"login":"test","pass":"test"})"));
        EXPECT_EQ(client.receive().status, 401);
        client.send(postRequest("/possystem/v4/getToken", R"({"login":"test","pass":"from the file"})"));
        EXPECT_EQ(client.receive().status, 200);
    }
    EXPECT_GT(runToTheEnd("--password x --password-file '" + file + "'").status, 1);
    EXPECT_GT(runToTheEnd("--config x --password-file '" + file + "'").status, 1);
    std::remove(file.c_str());
    const Ending missing = runToTheEnd("--password-file '" + file + "'");
    EXPECT_EQ(missing.output, "fremulator: cannot read " + file + "\n");
    EXPECT_EQ(missing.status, 1);
}

// Otherwise idle connections could keep everybody out until they time out.
TEST(Program, ClosesIdleConnectionsWhenItRunsOutOfDescriptors)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need a descriptor themselves to look at memory";
#endif
    Program program({});
    const std::uint16_t port = portIn(program.line());
    const rlimit few{.rlim_cur = 40, .rlim_max = 40};
    ASSERT_EQ(::prlimit(program.pid(), RLIMIT_NOFILE, &few, nullptr), 0);
    std::list<RawClient> idle;
    for (int i = 0; i < 60; ++i)
        idle.emplace_back(port);
    RawClient client(port);
    client.send(getRequest("/_emulator/faults"));
    EXPECT_EQ(client.receive().status, 200);
}

TEST(Program, ReadsItsConfigurationAndFaultsFromFiles)
{
    const std::string stem = testing::TempDir() + "fremulator-files-" + std::to_string(::getpid());
    std::ofstream(stem + ".config") << R"({"groups": [{"code": "g"}],
        "users": [{"login": "l", "password": "p", "groups": ["g"]}]})";
    std::ofstream(stem + ".faults") << R"([{"endpoint": "sell", "effect": "error", "code": 50}])";
    {
        Program program({"--config", stem + ".config", "--faults", stem + ".faults"});
        RawClient client(portIn(program.line()));
        EXPECT_THAT(program.line(), testing::MatchesRegex("page at http://127\\.0\\.0\\.1:[0-9]+/"));
        client.send(postRequest("/possystem/v4/getToken", R"({"login":"l","pass":"p"})"));
        const std::string token = "Token: " + client.receive().json()["token"].get<std::string>() + "\r\n";
        client.send(postRequest("/possystem/v4/g/sell", goodReceipt().dump(), token));
        EXPECT_EQ(client.receive().status, 500);
    }
    Program both({"--config", stem + ".config", "--login", "l"});
    EXPECT_NE(both.finish(0), 0);
    std::ofstream(stem + ".faults") << "[{}]";
    Program bad({"--faults", stem + ".faults"});
    EXPECT_EQ(bad.finish(0), 1);
    std::remove((stem + ".config").c_str());
    std::remove((stem + ".faults").c_str());
}

TEST(Program, ResolvesNoNamesAndStartsNoProgramsAndConnectsInOnePlaceOnly)
{
    const auto wordsOf = [](const char* command) {
        FILE* pipe = ::popen(command, "r");
        std::vector<std::pair<std::string, std::string>> all;
        std::array<char, 4096> line{};
        while (std::fgets(line.data(), line.size(), pipe) != nullptr) {
            std::istringstream words(line.data());
            std::string first;
            std::string name;
            words >> first;
            while (words >> name)
                continue;
            all.emplace_back(first, name.substr(0, name.find('@')));
        }
        EXPECT_EQ(::pclose(pipe), 0);
        return all;
    };
    std::set<std::string> imported;
    for (const auto& [type, name] : wordsOf("nm -D --undefined-only '" FREMULATOR "'"))
        imported.insert(name);
    EXPECT_EQ(imported.count("listen") + imported.count("accept"), 2u)
        << "the list of imports could not be read";
    for (const char* call : {"getaddrinfo", "gethostbyname", "gethostbyname_r", "sendto", "BIO_new_connect",
             "BIO_new_ssl_connect", "system", "popen", "execve", "execvp", "posix_spawn"})
        EXPECT_EQ(imported.count(call), 0u) << call;

    std::vector<std::string> connecting;
    for (const auto& [place, name] : wordsOf("nm -A --undefined-only '" EMULATOR_LIBRARY "'")) {
        if (name == "connect")
            connecting.push_back(place);
    }
    // The same file checks every address before it connects.
    EXPECT_THAT(connecting, testing::ElementsAre(testing::HasSubstr(":poster.cpp.o:")));
}

TEST(Program, DoesNotCallTheCallbackUrlOfAReceipt)
{
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), length), 0);
    ASSERT_EQ(::listen(listener, 1), 0);
    ASSERT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length), 0);

    Program program({});
    RawClient client(portIn(program.line()));
    client.send(postRequest("/possystem/v4/getToken", R"({"login":"test","pass":"test"})"));
    const std::string token = "Token: " + client.receive().json()["token"].get<std::string>() + "\r\n";
    Json receipt = goodReceipt();
    receipt["service"]["callback_url"] =
        "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/done";
    client.send(postRequest("/possystem/v4/test/sell", receipt.dump(), token));
    client.send(
        getRequest("/possystem/v4/test/report/" + client.receive().json()["uuid"].get<std::string>(), token));
    const Json report = client.receive().json();
    EXPECT_EQ(report["status"], "done");
    EXPECT_EQ(report["callback_url"], receipt["service"]["callback_url"]);

    // Once the program has ended, it can no longer call.
    EXPECT_EQ(program.finish(SIGTERM), 0);
    pollfd knock{.fd = listener, .events = POLLIN, .revents = 0};
    EXPECT_EQ(::poll(&knock, 1, 0), 0);
    ::close(listener);
}

TEST(Program, PrintsItsVersion)
{
    Program program({"--version"});
    EXPECT_EQ(program.line(), "fremulator " FREMULATOR_VERSION);
    EXPECT_EQ(program.finish(0), 0);
}

TEST(Program, DescribesEveryOptionInRussianWhereTheLocaleIs)
{
    ::setenv("LC_ALL", "ru_RU.UTF-8", 1);
    Program russian({"--help"});
    ::setenv("LC_ALL", "C.UTF-8", 1);
    Program english({"--help"});
    ::unsetenv("LC_ALL");
    const auto isRussian = [](const std::string& text) {
        return text.find("\xD0") != std::string::npos || text.find("\xD1") != std::string::npos;
    };
    // Without what the library says of an option in its own words.
    const auto withoutLabels = [](std::string line) {
        for (const std::string label : {"Нельзя вместе с", "Только вместе с"}) {
            if (const std::size_t at = line.find(label); at != std::string::npos)
                line.erase(at, label.size());
        }
        return line;
    };
    EXPECT_PRED1(isRussian, russian.line());

    int options = 0;
    // A long name has its description on the next line.
    std::string name;
    for (std::string line = russian.line(); russian.more(); line = russian.line()) {
        if (line.starts_with("  -")) {
            EXPECT_TRUE(name.empty()) << name << " has no description in Russian";
            name = line;
            ++options;
        }
        for (const char* label : {"Excludes", "Needs", "Usage", "OPTIONS"})
            EXPECT_THAT(line, testing::Not(testing::HasSubstr(label)));
        if (isRussian(withoutLabels(line)))
            name.clear();
    }
    EXPECT_TRUE(name.empty()) << name << " has no description in Russian";

    int described = 0;
    for (std::string line = english.line(); english.more(); line = english.line()) {
        EXPECT_FALSE(isRussian(line)) << line;
        described += line.starts_with("  -") ? 1 : 0;
    }
    EXPECT_EQ(options, described);
    EXPECT_GT(options, 10);
}

TEST(Program, ComplainsInRussianWhereTheLocaleIs)
{
    const std::pair<const char*, const char*> rows[] = {
        {"--wrong", "неизвестные параметры: --wrong"},
        {"--db ''", "--db: значение не должно быть пустым"},
        {"--keep 0", "--keep: значение 0 не в пределах от 1 до 1000000000"},
        {"--port x", "--port: неверное значение x"},
        {"--config x --login y", "--config нельзя указывать вместе с --login"},
        {"--tls-key x", "вместе с --tls-key нужно указать --tls-cert"},
        {"--port", "--port: не указано значение"},
        {"--pace=maybe", "--pace: неверное значение maybe"},
    };
    ::setenv("LC_ALL", "ru_RU.UTF-8", 1);
    for (const auto& [arguments, text] : rows) {
        const Ending ending = runToTheEnd(arguments);
        EXPECT_EQ(ending.output, text + std::string("\nСправка: fremulator --help\n")) << arguments;
        EXPECT_GT(ending.status, 1) << arguments;
    }
    ::unsetenv("LC_ALL");
    EXPECT_THAT(runToTheEnd("--wrong").output,
        testing::StartsWith("The following argument was not expected: --wrong\n"));
}

TEST(Program, WarnsOfAPasswordFileThatOthersCanRead)
{
    const std::string file = testing::TempDir() + "fremulator-mode-" + std::to_string(::getpid());
    std::ofstream(file) << "password\n";
    // A database cannot be in a folder that is a file, so the program ends at once.
    const std::string arguments = "--password-file '" + file + "' --db '" + file + "/db'";
    const auto warning =
        testing::StartsWith("fremulator: warning: others can read " + file + "; to prevent this: chmod 600 ");
    for (const auto& [mode, isOpen] : {std::pair(0600U, false), {0640U, true}, {0604U, true}}) {
        ASSERT_EQ(::chmod(file.c_str(), mode), 0);
        const Ending ending = runToTheEnd(arguments);
        EXPECT_EQ(ending.status, 1);
        EXPECT_EQ(testing::Value(ending.output, warning), isOpen) << ending.output;
    }
    std::remove(file.c_str());
}

TEST(Program, DocumentsEveryOptionAndEffectInItsReadme)
{
    std::stringstream readme;
    readme << std::ifstream(README).rdbuf();

    Program help({"--help"});
    std::vector<std::string> missing;
    for (std::string line = help.line(); help.more(); line = help.line()) {
        const std::size_t at = line.find("--");
        const std::string option =
            at > 6 ? std::string() : line.substr(at, line.find_first_of(" ,", at) - at);
        if (!option.empty() && option != "--help" && readme.str().find('`' + option) == std::string::npos)
            missing.push_back(option);
    }

    Program program({});
    RawClient client(portIn(program.line()));
    client.send(getRequest("/_emulator/effects"));
    const Json answer = client.receive().json();
    for (const Json& effect : answer["effects"]) {
        const auto name = effect["effect"].get<std::string>();
        if (readme.str().find('`' + name + '`') == std::string::npos)
            missing.push_back(name);
    }
    EXPECT_THAT(missing, testing::IsEmpty());
    EXPECT_EQ(answer["effects"].size(), 18u);
}
