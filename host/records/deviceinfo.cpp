#include "host/records/deviceinfo.h"

DeviceInfo::DeviceInfo() = default;
DeviceInfo::DeviceInfo(const DeviceInfo&) = default;
DeviceInfo::DeviceInfo(DeviceInfo&&) noexcept = default;
DeviceInfo& DeviceInfo::operator=(const DeviceInfo&) = default;
DeviceInfo& DeviceInfo::operator=(DeviceInfo&&) noexcept = default;
DeviceInfo::~DeviceInfo() = default;

DeviceInfo::DeviceInfo(const QString& code, const QString& name)
    : modelCode(code)
    , modelName(name)
{
}
