#pragma once

#include <QByteArray>
#include <QString>

namespace frhost {

/// The configuration as others may read it: what is not known to be harmless is masked, and comments, which
/// may hold a former password, are left out. Of a file that is not a configuration, only why.
[[nodiscard]] QByteArray maskedConfiguration(const QString& file);

} // namespace frhost
