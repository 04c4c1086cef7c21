#pragma once

#include "till/config/registerconfig.h"
#include "till/diagnosis/finding.h"

#include <QStringList>

namespace till {

/// What the machine contributes to a fault: system, time zone, locale, proxy, the warnings about the files of
/// the configuration, names, and the space in the folders of these files. Resolving a name may take seconds.
[[nodiscard]] QList<Finding> lookAtMachine(const RegisterConfig& config, const QStringList& writtenFiles);

// Parts of that.

/// `wanted` is the locale that the environment names, `encoding` that of the locale which is in use.
[[nodiscard]] Finding judgeLocale(const QString& wanted, const QString& encoding);
/// Whether the file can be written, and how much.
[[nodiscard]] Finding spaceFor(const QString& file);
/// `left` in bytes.
[[nodiscard]] Finding judgeSpace(const QString& file, bool isWritable, qint64 left);
[[nodiscard]] Finding resolved(const QString& host);
/// `environment` holds the values of the usual proxy variables that are set.
[[nodiscard]] Finding proxyFinding(const QString& proxy, const QStringList& environment);

} // namespace till
