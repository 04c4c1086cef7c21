#include "bench/responder/server.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#include <unistd.h>

namespace {

constexpr auto usage = "benchresponder --answers DIR [--tls CAFILE] [--record]\n"
                       "  --answers DIR  where token.json, accepted.json and done.json stand\n"
                       "  --tls CAFILE   speak TLS; the certificate to trust is written to CAFILE\n"
                       "  --record       keep the last receipt and hand it out at /last\n"
                       "Prints its port and ends when its standard input does.\n";

responder::Options parsed(int argc, char** argv)
{
    responder::Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--answers" && i + 1 < argc)
            options.answers = argv[++i];
        else if (argument == "--tls" && i + 1 < argc)
            options.caFile = argv[++i];
        else if (argument == "--record")
            options.record = true;
        else
            options.answers.clear();
    }
    return options;
}

void waitForEndOfInput()
{
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) > 0) {
    }
}

} // namespace

int main(int argc, char** argv)
{
    const responder::Options options = parsed(argc, argv);
    if (options.answers.empty()) {
        std::fputs(usage, stderr);
        return EXIT_FAILURE;
    }
    try {
        responder::Server server(options);
        server.start();
        std::printf("%d\n", server.port());
        std::fflush(stdout);
        waitForEndOfInput();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "benchresponder: %s\n", e.what());
        return EXIT_FAILURE;
    }
    // The serving threads wait in the kernel; ending the process ends them.
    std::_Exit(EXIT_SUCCESS);
}
