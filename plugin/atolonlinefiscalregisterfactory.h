#pragma once

#include <QObject>
#include <QVariant>

namespace hw {

/// The root object of the plugin. It does not implement a host interface: the host calls it through the
/// meta-object system.
class AtolOnlineFiscalRegisterFactory : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "AtolOnlineFiscalRegisterFactory" FILE "atolonline.json")
public:
    AtolOnlineFiscalRegisterFactory() = default;

public Q_SLOTS:
    /// A new device object as hw::AtolOnlineFiscalRegister*; it belongs to the caller.
    QVariant getObject() const;
};

} // namespace hw
