#pragma once

#include "bench/baselines/contender.h"
#include "bench/ours/hostsale.h"

#include <QObject>

#include <memory>

class AbstractFrDriver;
class VposFrDriver;

namespace bench {

/// Ours, closing with documentClose(): a device object of the built plugin, loaded and used as a host does.
class Device : public Contender
{
public:
    /// Throws std::runtime_error when the plugin cannot be loaded.
    Device(const Endpoint& endpoint, int lines);

    /// From opening the receipt to the answer about its state.
    std::int64_t registerSale() override;
    void setBuyer(std::int64_t number) override;

private:
    HostSale sale;
    std::unique_ptr<QObject> object;
    AbstractFrDriver* driver = nullptr;
    VposFrDriver* cloud = nullptr;
};

} // namespace bench
