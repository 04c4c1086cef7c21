#pragma once

#include "examples/serialdriver/serialline.h"
#include "frbase/basicfiscalregister.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

/// The device object of the sample register: the port's device file and the time for an answer as properties,
/// the driver after init().
///
/// A setter that refuses a value leaves the old one in place, and tells nobody.
class SampleRegister : public hw::BasicFiscalRegister
{
    Q_OBJECT
    Q_INTERFACES(hw::AbstractFiscalRegister)
    Q_CLASSINFO("displayName", "Sample register")
    Q_CLASSINFO("info", "A fictitious register on a serial line")
    Q_CLASSINFO("port:name", "Порт")
    Q_CLASSINFO("port:info", "Файл устройства, например /dev/ttyUSB0")
    Q_CLASSINFO("answerTime:name", "Время ответа")
    Q_CLASSINFO("answerTime:info", "Сколько миллисекунд ждать ответа. От 10 до 60000.")

    Q_PROPERTY(QString port READ getPort WRITE setPort)
    Q_PROPERTY(int answerTime READ getAnswerTime WRITE setAnswerTime)
public:
    SampleRegister();
    ~SampleRegister() override;

    [[nodiscard]] QString getPort() const { return port; }
    void setPort(const QString& deviceFile) { port = deviceFile; }
    /// Milliseconds.
    [[nodiscard]] int getAnswerTime() const { return answerTime; }
    /// Milliseconds; refuses a time outside 10 to 60000.
    void setAnswerTime(int milliseconds);

public Q_SLOTS:
    /// Creates the driver. To be called once.
    void init();

private:
    std::unique_ptr<SerialLine> line;
    QString port;
    int answerTime = 5000;
};

/// The root object of the plugin, which the host calls through the meta-object system.
class SampleRegisterFactory : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "SampleRegisterFactory" FILE "sample.json")
public Q_SLOTS:
    /// A new device object; it belongs to the caller.
    QVariant getObject() const;
};
