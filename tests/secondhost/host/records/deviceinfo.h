#pragma once

#include <QString>

#include <optional>

struct DeviceInfo
{
    DeviceInfo(const QString& modelCode, const QString& modelName)
        : name(modelName)
        , code(modelCode)
    {
    }

    void setProducerCode(const QString& value) { producer = value; }
    void setModel(const QString& newCode, const QString& newName)
    {
        code = newCode;
        name = newName;
    }
    void setLoggerName(const QString& value) { loggerName = value; }

    std::optional<QString> loggerName;
    QString producer, name, code;
};
