#pragma once

#include "host/records/driveroptions.h"

#include <QMetaType>

#include <type_traits>

namespace hw {

/// Describes the property driverOptions to Qt: hw::fr::DriverOptions by name and number, but without a size
/// or a constructor.
///
/// The host expects an invalid value when it reads a write-only property, but Qt would return an empty hash.
/// The undocumented way in which QtDBus returns something else uses arguments that not every caller passes.
/// Qt cannot create a value of a type without a size, however, and returns an invalid one by itself. The
/// registered type stays complete, and its values are written as usual: types with the same number are the
/// same to Qt.
struct WriteOnlyOptions
{
};

} // namespace hw

template <>
class QtPrivate::QMetaTypeInterfaceWrapper<hw::WriteOnlyOptions>
{
public:
    static QMetaTypeInterface metaType;
};

/// From here the code that moc generates takes the type of a property.
template <>
struct QtPrivate::TypeAndForceComplete<hw::fr::DriverOptions, std::true_type>
{
    using type = hw::WriteOnlyOptions;
    using ForceComplete = std::true_type;
};
