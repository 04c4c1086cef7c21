// receiptbench: one receipt, whole and in parts, by every contender in turn; see benchmarks.h.

#include "bench/receipts/benchmarks.h"
#include "bench/support/child.h"
#include "bench/support/cores.h"
#include "bench/support/quietlog.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    using namespace bench;
    const QCoreApplication application(argc, argv);
    quietLog();
    benchmark::Initialize(&argc, argv);
    stayOnCore(0);
    const Responder plain(Responder::Wire::Plain, Child::Core::OfItsOwn);
    const Responder tls(Responder::Wire::Tls, Child::Core::OfItsOwn);
    addReceipts("plain", plain.endpoint());
    addReceipts("tls", tls.endpoint());
    addComposer();
    addReplies();
    benchmark::RunSpecifiedBenchmarks();
    // The contenders hang up before the responders end.
    benchmark::ClearRegisteredBenchmarks();
}
