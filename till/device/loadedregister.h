#pragma once

#include "till/device/plugindiscovery.h"

#include <QObject>
#include <QPluginLoader>

#include <chrono>
#include <memory>

class AbstractFrDriver;
class VposFrDriver;

namespace hw {
class AbstractFiscalRegister;
}

namespace till {

/// One register of a loaded plugin: the device object and, once initialised, its driver.
///
/// Everything here throws Error when the plugin does not keep the host's contract.
class LoadedRegister
{
public:
    /// Loads the plugin and gets a device object from its factory.
    explicit LoadedRegister(const PluginFile& plugin);
    ~LoadedRegister();
    Q_DISABLE_COPY_MOVE(LoadedRegister)

    /// The device object; its properties are the register's settings.
    [[nodiscard]] QObject& device() const { return *object; }

    /// Creates the driver. Call once, after the settings have been written.
    void init();

    /// The name in the plugin's metadata.
    [[nodiscard]] QString name() const;
    /// Its number among the host's registers.
    [[nodiscard]] unsigned int number() const;

    /// The driver; only after init().
    [[nodiscard]] AbstractFrDriver& driver() { return *legacyDriver; }
    /// Whether the register is a web service; only after init().
    [[nodiscard]] bool hasService() const { return cloudDriver != nullptr; }
    /// What the driver offers as a web service; only after init(). Throws Error when it is not one.
    [[nodiscard]] VposFrDriver& service() const;

    /// Pause between two questions about a document.
    [[nodiscard]] std::chrono::milliseconds requestInterval() const;

private:
    QPluginLoader loader;
    QString pluginName;
    std::unique_ptr<QObject> object;
    hw::AbstractFiscalRegister* interface = nullptr;
    AbstractFrDriver* legacyDriver = nullptr;
    VposFrDriver* cloudDriver = nullptr;
};

} // namespace till
