#pragma once

#include "till/config/registerconfig.h"

#include <QList>
#include <QMetaProperty>
#include <QObject>
#include <QString>

namespace till {

class LoadedRegister;

/// The device's own properties, without those of QObject, in the order of their declaration.
[[nodiscard]] QList<QMetaProperty> deviceProperties(const QObject& device);

/// The settings that a configuration may give the device.
[[nodiscard]] QStringList settableNames(const QObject& device);

/// Whether the device says that it does not use this inherited property.
[[nodiscard]] bool isUnused(const QObject& device, const QString& property);

/// The value of the device's class info `key`; empty when there is none.
[[nodiscard]] QString classInfo(const QObject& device, const QString& key);

/// Writes the configuration into the device's properties.
///
/// Throws Error that names file and line for a setting that the device does not have (with the nearest one
/// that it has, not its own name, which may be a misplaced password), a value of the wrong type, and a value
/// that the device silently refused.
void configure(QObject& device, const RegisterConfig& config);

/// Configures the register's device, creates its driver and checks that the driver has taken over the
/// options. Throws Error likewise.
void setUp(LoadedRegister& fiscalRegister, const RegisterConfig& config);

} // namespace till
