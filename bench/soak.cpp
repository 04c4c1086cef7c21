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
    const int warmUp = receipts / 20;
    for (int i = 0; i < warmUp; ++i)
        device.registerSale(sale);
    // Looking takes pages too, the first time.
    std::ignore = residentKilobytes();
    const int files = openFiles();
    const long memory = residentKilobytes();
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < receipts; ++i)
        device.registerSale(sale);
    std::printf(R"({"receipts": %d, "seconds": %.1f, "rss_start_kb": %ld, "rss_end_kb": %ld, )"
                R"("files_start": %d, "files_end": %d})"
                "\n",
        receipts, static_cast<double>(timer.elapsed()) / 1e3, memory, residentKilobytes(), files,
        openFiles());
}
