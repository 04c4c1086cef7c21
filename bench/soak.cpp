// Many receipts through one driver; prints resident memory and open files after the warm-up and at the end,
// as one line of JSON. Argument: how many receipts.

#include "bench/ours/device.h"
#include "bench/support/child.h"
#include "bench/support/golden.h"
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
    constexpr int lines = 3;
    const HostSale sale(sampleSale(lines));
    {
        const Responder recorder(Responder::Wire::Plain, {QStringLiteral("--record")});
        requireGoldenSale("soak", recorder.endpoint(), lines,
            [&] { return Device(recorder.endpoint()).registerSale(sale); });
    }
    const Responder responder(Responder::Wire::Plain);
    Device device(responder.endpoint());
    const auto sell = [&](int count) {
        for (int i = 0; i < count; ++i)
            require("soak", device.registerSale(sale) == goldenSign, QStringLiteral("another answer"));
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
