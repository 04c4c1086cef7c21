#pragma once

#include "frbase/basicfrsettings.h"
#include "frbase/writeonlyoptions.h"
#include "host/abstractfiscalregister.h"
#include "host/records/driveroptions.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QtGlobal>

namespace hw {

/// Base of a fiscal register's device object: holds the driver, and offers the settings as Qt properties.
///
/// A derived class passes its own settings record to the constructor. Later, when the host has written the
/// properties, it creates its driver with the raw pointer of settings and stores it in legacyDriver.
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
    /// Write only: reading it returns an invalid value.
    Q_PROPERTY(hw::fr::DriverOptions driverOptions WRITE setDriverOptions DESIGNABLE false)
public:
    /// Shares the settings, which must not be null. Does not create a driver.
    BasicFiscalRegister(const QSharedPointer<BasicFrSettings>& sharedSettings, QObject* parent);
    ~BasicFiscalRegister() override;
    Q_DISABLE_COPY_MOVE(BasicFiscalRegister)

    /// Borrowed; null until the derived class has created its driver.
    [[nodiscard]] AbstractFrDriver* getLegacyDriver() override;
    /// Null: the register cannot be used as a printer.
    [[nodiscard]] AbstractPrinter* getPrinter() override;
    [[nodiscard]] unsigned int getDeviceId() const override;
    /// Null: the firmware cannot be upgraded by the host.
    [[nodiscard]] QSharedPointer<AbstractUpgradeManager> getUpgradeManager() const override;
    [[nodiscard]] bool isSpeedEnumerate() const override;
    void setSpeedEnumerate(bool enumerate) override;
    void setDeviceId(unsigned int id) override;

    /// The number of the host's device class "fiscal register".
    [[nodiscard]] int getHardwareClass() const { return 64; }
    /// Adds the options to those in the settings; an option that is already there takes the new value.
    void setDriverOptions(const fr::DriverOptions& options);
    /// Names inherited properties that the device does not use; for the constructors of derived classes. The
    /// host reads all names given so far from the dynamic property "unusedProps".
    void addUnusedProperties(const QList<QString>& names);

protected:
    /// Owned: deleted with this object, before the settings are released. A driver that is replaced is not
    /// deleted.
    AbstractFrDriver* legacyDriver = nullptr;
    QSharedPointer<BasicFrSettings> settings;
    QList<QString> unusedProps;
};

} // namespace hw
