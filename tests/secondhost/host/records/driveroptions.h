#pragma once

#include <QHash>

namespace hw::fr {

enum class Option : quint64
{
};

using DriverOptions = QHash<Option, bool>;

enum class CheckType
{
};

} // namespace hw::fr
