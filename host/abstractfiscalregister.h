#pragma once

#include "host/export.h"

#include <QSharedPointer>
#include <QtPlugin>

class AbstractFrDriver;

namespace hw {

class AbstractPrinter;
class AbstractUpgradeManager;

/// A fiscal register as the host sees it. Its settings are Qt properties of the object that implements this
/// interface. The order of the operations is part of the binary contract with plugins: a new one goes to the
/// end.
class HOST_EXPORT AbstractFiscalRegister
{
public:
    virtual ~AbstractFiscalRegister();

    /// The driver. Borrowed, it belongs to the device object; null until the device has been initialised.
    virtual AbstractFrDriver* getLegacyDriver() = 0;
    /// Borrowed; null if the register cannot be used as a printer.
    virtual AbstractPrinter* getPrinter() = 0;
    /// Number of this register among those connected to the host.
    virtual unsigned int getDeviceId() const = 0;
    virtual void setDeviceId(unsigned int id) = 0;
    /// Whether the driver may try other line speeds when a reconnection fails.
    virtual bool isSpeedEnumerate() const = 0;
    virtual void setSpeedEnumerate(bool enumerate) = 0;
    /// Null if the host cannot upgrade the register's firmware.
    virtual QSharedPointer<AbstractUpgradeManager> getUpgradeManager() const = 0;
};

} // namespace hw

Q_DECLARE_INTERFACE(hw::AbstractFiscalRegister, "xx.tarvo.AbstractFiscalRegister/4.5")
