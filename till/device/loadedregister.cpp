#include "till/device/loadedregister.h"

#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/vposfrdriver.h"
#include "till/error.h"
#include "till/text.h"

#include <QMetaObject>
#include <QVariant>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

[[noreturn]] void fail(const QPluginLoader& loader, const QString& what)
{
    throw Error(Problem::Setup, u"%1: %2"_s.arg(loader.fileName(), what));
}

} // namespace

LoadedRegister::LoadedRegister(const PluginFile& plugin)
    : loader(plugin.path)
    , pluginName(plugin.name())
{
    QObject* factory = loader.instance();
    if (!factory)
        fail(loader, loader.errorString());
    QVariant made;
    if (!QMetaObject::invokeMethod(factory, "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, made)))
        fail(loader, Text::tr("the factory has no slot getObject"));
    object.reset(made.value<QObject*>());
    interface = qobject_cast<hw::AbstractFiscalRegister*>(object.get());
    if (!interface)
        fail(loader, Text::tr("the factory did not return a fiscal register"));
}

LoadedRegister::~LoadedRegister() = default;

void LoadedRegister::init()
{
    if (!QMetaObject::invokeMethod(object.get(), "init", Qt::DirectConnection))
        fail(loader, Text::tr("the register has no slot init"));
    legacyDriver = interface->getLegacyDriver();
    if (!legacyDriver)
        fail(loader, Text::tr("the register has no driver after init"));
    cloudDriver = dynamic_cast<VposFrDriver*>(legacyDriver);
}

QString LoadedRegister::name() const
{
    return pluginName;
}

unsigned int LoadedRegister::number() const
{
    return interface->getDeviceId();
}

VposFrDriver& LoadedRegister::service() const
{
    if (!cloudDriver)
        fail(loader,
            Text::tr("the driver does not implement VposFrDriver, the interface of a cloud register"));
    return *cloudDriver;
}

std::chrono::milliseconds LoadedRegister::requestInterval() const
{
    return std::chrono::milliseconds(object->property("requestInterval").toInt());
}

} // namespace till
