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

    /// The driver; only after init().
    [[nodiscard]] AbstractFrDriver& driver() { return *legacyDriver; }
    /// What the driver offers as a cloud register; only after init().
    [[nodiscard]] VposFrDriver& service() { return *cloudDriver; }

    /// Pause between two questions about a document.
    [[nodiscard]] std::chrono::milliseconds requestInterval() const;

private:
    QPluginLoader loader;
    std::unique_ptr<QObject> object;
    hw::AbstractFiscalRegister* interface = nullptr;
    AbstractFrDriver* legacyDriver = nullptr;
    VposFrDriver* cloudDriver = nullptr;
};

} // namespace till
