#pragma once

#include "frbase/basicfrsettings.h"
#include "host/abstractfiscalregister.h"
#include "host/records/driveroptions.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>

namespace hw {

/// Base of the device object of a fiscal register: its driver, and its settings as Qt properties.
///
/// A derived object passes its own settings record to the constructor, and later, when the host has written
/// the properties, creates its driver with the raw pointer of settings and stores it in legacyDriver.
///
/// The class-info pairs label the properties for the host's settings editor; nothing here enforces their
/// limits.
class BasicFiscalRegister : public QObject, public AbstractFiscalRegister
{
    Q_OBJECT
    Q_CLASSINFO("deviceId:name", "Номер ФР")
    Q_CLASSINFO("deviceId:type", "num")
    Q_CLASSINFO("deviceId:max", "19")
    Q_CLASSINFO("deviceId:info",
        "Номер фискального регистратора. Должен быть уникальным среди всех подключенных ФР, возможные "
        "значения - от 0 до 19. Этот номер используется в названиях секций dravo.ini для задания настроек "
        "для конкретного ФР (параметры программирования, соотнесение отделов и т д)")
    Q_CLASSINFO("speedEnumerate:name", "Перебор скорости")
    Q_CLASSINFO("speedEnumerate:type", "strEnum")
    Q_CLASSINFO("speedEnumerate:strEnum", "выкл;вкл")
    Q_CLASSINFO("speedEnumerate:info", "Выполнять перебор скорости при повторной попытке установки связи")

    Q_PROPERTY(int hardwareClass READ getHardwareClass DESIGNABLE false)
    Q_PROPERTY(uint deviceId READ getDeviceId WRITE setDeviceId)
    Q_PROPERTY(bool speedEnumerate READ isSpeedEnumerate WRITE setSpeedEnumerate)
    /// Write only: reading it gives an invalid value.
    Q_PROPERTY(hw::fr::DriverOptions driverOptions WRITE setDriverOptions DESIGNABLE false)
public:
    /// Shares the settings, which must not be null. There is no driver yet.
    BasicFiscalRegister(const QSharedPointer<BasicFrSettings>& settings, QObject* parent);
    ~BasicFiscalRegister() override;
    Q_DISABLE_COPY_MOVE(BasicFiscalRegister)

    /// Borrowed; null until the derived object has created its driver.
    [[nodiscard]] AbstractFrDriver* getLegacyDriver() override;
    /// Null: no printer of its own.
    [[nodiscard]] AbstractPrinter* getPrinter() override;
    [[nodiscard]] unsigned int getDeviceId() const override;
    /// Null: no upgrades.
    [[nodiscard]] QSharedPointer<AbstractUpgradeManager> getUpgradeManager() const override;
    [[nodiscard]] bool isSpeedEnumerate() const override;
    void setSpeedEnumerate(bool enumerate) override;
    void setDeviceId(unsigned int id) override;

    /// The host's class of fiscal registers.
    [[nodiscard]] int getHardwareClass() const { return 64; }
    /// Adds the options to those of the settings; one that is there takes the new value.
    void setDriverOptions(const fr::DriverOptions& options);
    /// Names inherited properties that the device does not use. The host reads all names so far from the
    /// dynamic property "unusedProps". For the constructors of derived objects.
    void addUnusedProperties(const QList<QString>& names);

protected:
    /// Owned: deleted with this object, before the settings are released. One that is replaced is not.
    AbstractFrDriver* legacyDriver = nullptr;
    QSharedPointer<BasicFrSettings> settings;
    QList<QString> unusedProps;

private:
    // Qt reads a property without READ as a default value of its type. The generated qt_metacall() passes
    // `this`, so it prefers this overload to the generated function, and the read is answered as invalid.
    static void qt_static_metacall(
        BasicFiscalRegister* device, QMetaObject::Call call, int index, void** arguments);
};

} // namespace hw
