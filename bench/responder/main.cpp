// benchresponder ANSWERS [CAFILE]: answers with the bodies in the folder ANSWERS; given CAFILE, over TLS,
// and writes the certificate to trust there. Prints its port and ends when its standard input does.

#include "bench/responder/server.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fputs("usage: benchresponder ANSWERS [CAFILE]\n", stderr);
        return EXIT_FAILURE;
    }
    std::signal(SIGPIPE, SIG_IGN);
    try {
        responder::Server server({argv[1], argc == 3 ? argv[2] : ""});
        std::thread([&server] { server.run(); }).detach();
        std::printf("%d\n", server.port());
        std::fflush(stdout);
        char byte = 0;
        while (read(STDIN_FILENO, &byte, 1) > 0) {
        }
        // The serving threads are blocked in the kernel and use the server; only the end of the process ends
        // them.
        std::_Exit(EXIT_SUCCESS);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "benchresponder: %s\n", e.what());
        return EXIT_FAILURE;
    }
}
