#pragma once

#include "host/export.h"

#include <QString>

/// Describes the device of a driver.
class HOST_EXPORT DeviceInfo
{
public:
    DeviceInfo();
    /// Code and name of the model.
    DeviceInfo(const QString& code, const QString& name);
    DeviceInfo(const DeviceInfo&);
    DeviceInfo(DeviceInfo&&) noexcept;
    DeviceInfo& operator=(const DeviceInfo&);
    DeviceInfo& operator=(DeviceInfo&&) noexcept;
    ~DeviceInfo();

    void setModel(const QString& code, const QString& name)
    {
        modelCode = code;
        modelName = name;
    }
    [[nodiscard]] QString getModelCode() const { return modelCode; }
    [[nodiscard]] QString getModelName() const { return modelName; }

    void setProducerCode(const QString& code) { producerCode = code; }
    [[nodiscard]] QString getProducerCode() const { return producerCode; }

    /// Second name of the driver's logger.
    void setLoggerName(const QString& name) { loggerName = name; }
    [[nodiscard]] QString getLoggerName() const { return loggerName; }

private:
    QString modelCode;
    QString modelName;
    QString producerCode;
    QString loggerName;
};
