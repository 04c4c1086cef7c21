#pragma once

#include <QObject>
#include <QVariant>

namespace hw {

/// The root object of the plugin. It implements no host interface: the host reaches it by the meta-object
/// system.
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
