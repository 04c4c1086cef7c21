#include "frbase/basicfiscalregister.h"

#include "host/abstractfrdriver.h"

#include <QMetaType>

// Constant-initialised, so that it is there for whatever the loading of the library runs first.
constinit QtPrivate::QMetaTypeInterface QtPrivate::QMetaTypeInterfaceWrapper<hw::WriteOnlyOptions>::metaType =
    {0, 0, 0, 0, 0, nullptr, "hw::fr::DriverOptions", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
        nullptr, nullptr, nullptr, nullptr};

namespace hw {

namespace {

// When the library is loaded: the host may look the type up before there is a device.
[[maybe_unused]] const bool isTypeRegistered = [] {
    const int id = qRegisterMetaType<fr::DriverOptions>("hw::fr::DriverOptions");
    QtPrivate::QMetaTypeInterfaceWrapper<WriteOnlyOptions>::metaType.typeId.storeRelaxed(id);
    return true;
}();

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

} // namespace hw
