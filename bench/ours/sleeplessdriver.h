#pragma once

#include "driver/atolonlinefrdriver.h"

namespace bench {

/// The driver without the sleeps between its status questions.
class SleeplessDriver : public AtolOnlineFRDriver
{
public:
    using AtolOnlineFRDriver::AtolOnlineFRDriver;
    void msleep(int) const override {}
};

} // namespace bench
