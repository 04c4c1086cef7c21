#pragma once

#include "host/export.h"

#include <QSharedPointer>
#include <QtPlugin>

class AbstractFrDriver;

namespace hw {

class AbstractPrinter;
class AbstractUpgradeManager;

/// The device object of a fiscal register as the host holds it. Its settings are Qt properties of the object
/// that implements it. The order of the operations is the binary contract with plugins.
class HOST_EXPORT AbstractFiscalRegister
{
public:
    virtual ~AbstractFiscalRegister();

    /// Borrowed; belongs to the device object. Null before the device has been initialised.
    [[nodiscard]] virtual AbstractFrDriver* getLegacyDriver() = 0;
    /// Borrowed; null when the register is no printer.
    [[nodiscard]] virtual AbstractPrinter* getPrinter() = 0;
    [[nodiscard]] virtual unsigned int getDeviceId() const = 0;
    virtual void setDeviceId(unsigned int id) = 0;
    [[nodiscard]] virtual bool isSpeedEnumerate() const = 0;
    virtual void setSpeedEnumerate(bool enumerate) = 0;
    /// Null when the register's firmware cannot be upgraded by the host.
    [[nodiscard]] virtual QSharedPointer<AbstractUpgradeManager> getUpgradeManager() const = 0;
};

} // namespace hw

Q_DECLARE_INTERFACE(hw::AbstractFiscalRegister, "xx.tarvo.AbstractFiscalRegister/4.5")
