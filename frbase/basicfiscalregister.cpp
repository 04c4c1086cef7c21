#include "frbase/basicfiscalregister.h"

#include "host/abstractfrdriver.h"

#include <QMetaProperty>
#include <QVariant>

namespace hw {

namespace {

// When the library is loaded: the host may look the type up before there is a device.
[[maybe_unused]] const int typeId = qRegisterMetaType<fr::DriverOptions>("hw::fr::DriverOptions");

} // namespace

BasicFiscalRegister::BasicFiscalRegister(
    const QSharedPointer<BasicFrSettings>& sharedSettings, QObject* parent)
    : QObject(parent)
    , settings(sharedSettings)
{
}

BasicFiscalRegister::~BasicFiscalRegister()
{
    delete legacyDriver;
}

AbstractFrDriver* BasicFiscalRegister::getLegacyDriver()
{
    return legacyDriver;
}

AbstractPrinter* BasicFiscalRegister::getPrinter()
{
    return nullptr;
}

QSharedPointer<AbstractUpgradeManager> BasicFiscalRegister::getUpgradeManager() const
{
    return {};
}

unsigned int BasicFiscalRegister::getDeviceId() const
{
    return settings->getDeviceId();
}

void BasicFiscalRegister::setDeviceId(unsigned int id)
{
    settings->setDeviceId(id);
}

bool BasicFiscalRegister::isSpeedEnumerate() const
{
    return settings->isSpeedEnumerate();
}

void BasicFiscalRegister::setSpeedEnumerate(bool enumerate)
{
    settings->setSpeedEnumerate(enumerate);
}

void BasicFiscalRegister::setDriverOptions(const fr::DriverOptions& options)
{
    for (auto option = options.cbegin(); option != options.cend(); ++option)
        settings->setDriverOption(option.key(), option.value());
}

void BasicFiscalRegister::addUnusedProperties(const QList<QString>& names)
{
    unusedProps += names;
    setProperty("unusedProps", unusedProps);
}

void BasicFiscalRegister::qt_static_metacall(
    BasicFiscalRegister* device, QMetaObject::Call call, int index, void** arguments)
{
    static const int driverOptions =
        staticMetaObject.indexOfProperty("driverOptions") - staticMetaObject.propertyOffset();
    if (call != QMetaObject::ReadProperty || index != driverOptions) {
        qt_static_metacall(static_cast<QObject*>(device), call, index, arguments);
        return;
    }
    // QMetaProperty::read() returns the variant in the second argument if the status in the third has
    // changed.
    if (arguments[1]) {
        *static_cast<QVariant*>(arguments[1]) = QVariant();
        *static_cast<int*>(arguments[2]) = 0;
    }
}

} // namespace hw
