#pragma once

#include "driver/atolonlinefrdriver.h"

#include <QList>

/// A cloud driver that notes how long it would sleep and goes on at once.
class SleeplessDriver : public AtolOnlineFRDriver
{
public:
    using AtolOnlineFRDriver::AtolOnlineFRDriver;

    void msleep(int ms) const override { sleeps.append(ms); }

    /// Milliseconds of each sleep, in order.
    mutable QList<int> sleeps;
};
