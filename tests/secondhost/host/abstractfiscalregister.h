#pragma once

#include <QSharedPointer>
#include <QtPlugin>

class AbstractFrDriver;

namespace hw {

class AbstractPrinter;
class AbstractUpgradeManager;

class AbstractFiscalRegister
{
public:
    virtual ~AbstractFiscalRegister() = default;
    virtual AbstractFrDriver* getLegacyDriver() = 0;
    virtual AbstractPrinter* getPrinter() = 0;
    virtual unsigned int getDeviceId() const = 0;
    virtual void setDeviceId(unsigned int) = 0;
    virtual bool isSpeedEnumerate() const = 0;
    virtual void setSpeedEnumerate(bool) = 0;
    virtual QSharedPointer<AbstractUpgradeManager> getUpgradeManager() const = 0;
};

} // namespace hw

Q_DECLARE_INTERFACE(hw::AbstractFiscalRegister, "xx.tarvo.AbstractFiscalRegister/4.5")
