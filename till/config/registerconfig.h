#pragma once

#include "host/records/driveroptions.h"
#include "host/transport/transportoptions.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>

namespace till {

/// One setting of a register as the configuration gives it.
struct Setting
{
    /// The device's property name.
    QString name;
    QString value;
    /// Its line in the configuration file, counted from 1.
    int line = 0;
};

/// The section [queue].
struct QueueConfig
{
    /// Path of the queue's file, or a service of PostgreSQL; empty for the user's own file.
    QString store;
    /// Registers at work at once in one worker.
    int parallel = 1;
    /// After this time without a sign of life, another worker takes over what a worker has under way.
    std::chrono::seconds lease{120};
};

/// What a configuration file holds. Whether the device knows the settings is decided when they are written
/// to it.
struct RegisterConfig
{
    /// The configuration file; empty for a configuration that was not read from one.
    QString file;
    QList<Setting> settings;
    hw::fr::DriverOptions driverOptions;
    /// How the service is reached; the defaults where the file says nothing.
    hostruntime::TransportOptions transport;
    QueueConfig queue;
    /// Warnings for the user; the configuration can be used all the same.
    QStringList warnings;

    [[nodiscard]] bool has(const QString& name) const;
};

/// Reads a configuration file. `passwordFile` is replaced by a `password` with that file's first line; where
/// neither is given, the credential `frhost.password` of $CREDENTIALS_DIRECTORY is the password, if there is
/// one. Relative paths are taken from the configuration's folder. Files larger than 1 MiB are refused.
///
/// A file with a password that others can read is a warning. So is a configuration that others can change or
/// replace, and a credential that is not used.
///
/// Throws Error that names the file and the line, and never quotes it.
[[nodiscard]] RegisterConfig readRegisterConfig(const QString& file);

/// The keys of the section [transport].
[[nodiscard]] QStringList transportKeys();

/// Throws Error when a setting is missing without which a service cannot be reached. `known` names the
/// settings of the device; one that it does not have is not missing.
void requireConnection(const RegisterConfig& config, const QStringList& known);

} // namespace till
