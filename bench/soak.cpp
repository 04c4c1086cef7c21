// Many receipts through one driver; prints resident memory and open files after the warm-up and at the end,
// as one line of JSON. Argument: how many receipts.

#include "bench/support/child.h"
#include "bench/support/device.h"
#include "bench/support/process.h"
#include "bench/support/quietlog.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <cstdlib>
#include <tuple>

int main(int argc, char** argv)
{
    using namespace bench;
    const QCoreApplication application(argc, argv);
    const int receipts = argc == 2 ? std::atoi(argv[1]) : 0;
    if (receipts < 1)
        return EXIT_FAILURE;
    quietLog();
    const Responder responder(Responder::Wire::Plain);
    Device device(responder.endpoint());
    const HostSale sale(sampleSale(3));
    const auto sell = [&](int count) {
        for (int i = 0; i < count; ++i)
            device.registerSale(sale);
    };
    // Looking takes pages too, the first times.
    for (int i = 0; i < 4; ++i) {
        sell(receipts / 80);
        std::ignore = residentKilobytes();
        std::ignore = openFiles();
    }
    const int files = openFiles();
    QElapsedTimer timer;
    timer.start();
    const long memory = residentKilobytes();
    sell(receipts);
    const long memoryAtEnd = residentKilobytes();
    const double seconds = static_cast<double>(timer.elapsed()) / 1e3;
    std::printf(R"({"receipts": %d, "seconds": %.1f, "rss_start_kb": %ld, "rss_end_kb": %ld, )"
                R"("files_start": %d, "files_end": %d})"
                "\n",
        receipts, seconds, memory, memoryAtEnd, files, openFiles());
}
