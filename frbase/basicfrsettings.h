#pragma once

#include "host/records/driveroptions.h"

#include <QObject>

/// Settings that every fiscal register has. A plain record: nothing is checked here.
///
/// It belongs to the device object, through a QSharedPointer; the driver borrows it.
class BasicFrSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(uint deviceid READ getDeviceId)
public:
    BasicFrSettings();
    ~BasicFrSettings() override;

    /// Number of this register among those connected to the host.
    [[nodiscard]] unsigned int getDeviceId() const { return deviceId; }
    void setDeviceId(unsigned int id) { deviceId = id; }

    /// Whether the driver may try other line speeds when a reconnection fails.
    [[nodiscard]] bool isSpeedEnumerate() const { return speedEnumerate; }
    void setSpeedEnumerate(bool enumerate) { speedEnumerate = enumerate; }

    /// Options that take precedence over what a driver sets.
    [[nodiscard]] const hw::fr::DriverOptions& getDriverOptions() const { return driverOptions; }
    void setDriverOption(hw::fr::Option option, bool value) { driverOptions.insert(option, value); }

private:
    hw::fr::DriverOptions driverOptions;
    unsigned int deviceId = 0;
    bool speedEnumerate = true;
};
