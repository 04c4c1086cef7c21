#pragma once

#include "bench/baselines/contender.h"
#include "bench/ours/hostsale.h"

#include <QObject>
#include <QPluginLoader>

#include <memory>

class AbstractFrDriver;
class VposFrDriver;

namespace bench {

/// Ours: a device object of the built plugin, loaded and used as a host does.
class Device
{
public:
    /// Loads the plugin once a process; throws std::runtime_error.
    explicit Device(const Endpoint& endpoint);

    /// From opening the receipt to the answer about its state; returns the fiscal sign.
    std::int64_t registerSale(const HostSale& sale);

private:
    std::unique_ptr<QObject> object;
    AbstractFrDriver* driver = nullptr;
    VposFrDriver* cloud = nullptr;
};

} // namespace bench
