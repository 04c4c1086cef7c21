#pragma once

#include "bench/baselines/contender.h"
#include "bench/ours/hostsale.h"
#include "driver/atolonlinefrdriver.h"
#include "plugin/atolonlinesettings.h"

namespace bench {

/// Ours, closing with checkClose: the driver linked in, its sleeps left out.
class LinkedDriver
{
public:
    explicit LinkedDriver(const Endpoint& endpoint);

    /// From opening the receipt to its fiscal result; returns the fiscal sign.
    std::int64_t registerSale(const HostSale& sale);

private:
    class Driver : public AtolOnlineFRDriver
    {
    public:
        using AtolOnlineFRDriver::AtolOnlineFRDriver;
        void msleep(int) const override {}
    };

    static AtolOnlineSettings* filled(AtolOnlineSettings& settings, const Endpoint& endpoint);

    AtolOnlineSettings settings;
    Driver driver;
};

} // namespace bench
