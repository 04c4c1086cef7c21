// A fresh process that loads a plugin as a host does; prints one line of JSON. Arguments: the plugin's file
// and how many registers to make.

#include "bench/support/process.h"

#include <QElapsedTimer>
#include <QPluginLoader>
#include <QVariant>

#include <cstdio>
#include <cstdlib>

namespace {

QObject* initialisedObject(QObject* factory)
{
    QVariant made;
    QMetaObject::invokeMethod(factory, "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, made));
    auto* object = made.value<QObject*>();
    if (!object || !QMetaObject::invokeMethod(object, "init", Qt::DirectConnection)) {
        std::fputs("load: the plugin makes no object with an init()\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    return object;
}

} // namespace

int main(int argc, char** argv)
{
    const int registers = argc == 3 ? std::atoi(argv[2]) : 0;
    if (registers < 2)
        return EXIT_FAILURE;
    const long before = bench::residentKilobytes();
    QElapsedTimer timer;
    timer.start();
    QPluginLoader loader(QString::fromLocal8Bit(argv[1]));
    QObject* factory = loader.instance();
    if (!factory) {
        std::fprintf(stderr, "load: %s\n", qPrintable(loader.errorString()));
        return EXIT_FAILURE;
    }
    const qint64 loaded = timer.nsecsElapsed();
    initialisedObject(factory);
    const qint64 initialised = timer.nsecsElapsed();
    const long first = bench::residentKilobytes();
    // The registers live as long as the process, as a host's do.
    for (int i = 1; i < registers; ++i)
        initialisedObject(factory);
    const double further = static_cast<double>(bench::residentKilobytes() - first) / (registers - 1);
    std::printf(R"({"load_us": %.1f, "init_us": %.1f, "first_kb": %ld, "further_kb": %.1f})"
                "\n",
        static_cast<double>(loaded) / 1e3, static_cast<double>(initialised - loaded) / 1e3, first - before,
        further);
}
