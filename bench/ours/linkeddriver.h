#pragma once

#include "bench/baselines/contender.h"
#include "bench/ours/hostsale.h"
#include "bench/ours/sleeplessdriver.h"
#include "plugin/atolonlinesettings.h"

namespace bench {

/// Ours, closing with checkClose(), with the driver linked in: the plugin's own sleeps.
class LinkedDriver : public Contender
{
public:
    LinkedDriver(const Endpoint& endpoint, int lines);

    /// From opening the receipt to its fiscal result.
    std::int64_t registerSale() override;

private:
    HostSale sale;
    AtolOnlineSettings settings;
    std::unique_ptr<SleeplessDriver> driver;
};

} // namespace bench
