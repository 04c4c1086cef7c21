#pragma once

#include "frbase/basicfiscalregister.h"
#include "host/abstractfiscalregister.h"

#include <QSharedPointer>
#include <QString>

class AtolOnlineSettings;

namespace hw {

/// The device object of one cloud fiscal register. The host owns it, writes its properties from its
/// configuration, calls init() once and then uses getLegacyDriver().
///
/// Setters neither throw nor report anything: a value that is refused leaves the old one in force.
class AtolOnlineFiscalRegister : public BasicFiscalRegister
{
    Q_OBJECT
    Q_INTERFACES(hw::AbstractFiscalRegister)
    Q_CLASSINFO("name", "AtolOnline")
    Q_CLASSINFO("type", "Fr")
    Q_CLASSINFO("displayName", "Атол Онлайн")
    Q_CLASSINFO("devices", "AtolOnline")
    Q_CLASSINFO("info", "Драйвер облачного фискального регистратора Атол Онлайн")
    Q_CLASSINFO("url:name", "Адрес сервера")
    Q_CLASSINFO("url:info", "Адрес сервера Атол Онлайн")
    Q_CLASSINFO("login:name", "Имя пользователя")
    Q_CLASSINFO("login:info", "Имя пользователя для доступа к Атол Онлайн")
    Q_CLASSINFO("password:name", "Пароль")
    Q_CLASSINFO("password:info", "Пароль для доступа к Атол Онлайн")
    Q_CLASSINFO("requestInterval:name", "Интервал запроса статуса")
    Q_CLASSINFO("requestInterval:info",
        "Интервал запроса статуса отправленного документа в миллисекундах. Не может быть меньше 200 мс.")
    Q_CLASSINFO("email:name", "Электронный адрес организации")
    Q_CLASSINFO("email:info", "Электронный адрес организации (email) для передачи в ОФД")
    Q_CLASSINFO("inn:name", "ИНН организации")
    Q_CLASSINFO("inn:info", "ИНН организации. 10 или 12 символов, только цифры")
    Q_CLASSINFO("paymentAddress:name", "Место расчетов")
    Q_CLASSINFO("paymentAddress:info", "Место расчетов. Максимальная длина строки - 256 символов")
    Q_CLASSINFO("groupCode:name", "Код группы")
    Q_CLASSINFO("groupCode:info", "Код группы")

    Q_PROPERTY(QString url READ getUrl WRITE setUrl)
    Q_PROPERTY(QString login READ getLogin WRITE setLogin)
    Q_PROPERTY(QString password READ getPassword WRITE setPassword)
    Q_PROPERTY(int requestInterval READ getRequestInterval WRITE setRequestInterval)
    Q_PROPERTY(QString email READ getEmail WRITE setEmail)
    Q_PROPERTY(QString inn READ getInn WRITE setInn)
    Q_PROPERTY(QString paymentAddress READ getPaymentAddress WRITE setPaymentAddress)
    Q_PROPERTY(QString groupCode READ getGroupCode WRITE setGroupCode)

public:
    AtolOnlineFiscalRegister();
    ~AtolOnlineFiscalRegister() override;

    /// The settings that the properties write to; the driver reads the same record.
    [[nodiscard]] QSharedPointer<AtolOnlineSettings> getSettings() const;

    [[nodiscard]] QString getUrl() const;
    /// Appends the final "/" of the service's address if it is missing.
    void setUrl(const QString& url);
    [[nodiscard]] QString getLogin() const;
    void setLogin(const QString& login);
    [[nodiscard]] QString getPassword() const;
    void setPassword(const QString& password);
    /// Milliseconds.
    [[nodiscard]] int getRequestInterval() const;
    /// Milliseconds; refuses a value below 200.
    void setRequestInterval(int interval);
    [[nodiscard]] QString getEmail() const;
    void setEmail(const QString& email);
    [[nodiscard]] QString getInn() const;
    void setInn(const QString& inn);
    [[nodiscard]] QString getPaymentAddress() const;
    /// Refuses a text of more than 256 characters.
    void setPaymentAddress(const QString& address);
    [[nodiscard]] QString getGroupCode() const;
    void setGroupCode(const QString& code);

public Q_SLOTS:
    /// Creates the driver. To be called once: a second call does not destroy the driver of the first.
    void init();
};

} // namespace hw
