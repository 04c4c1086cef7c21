#pragma once

#include "frbase/basicfrsettings.h"

#include <QString>

/// Settings of one cloud fiscal register. A plain record: the device object checks values before it writes
/// them.
///
/// It belongs to the device object, through a QSharedPointer; the driver and the service client borrow it.
class AtolOnlineSettings : public BasicFrSettings
{
public:
    AtolOnlineSettings();
    ~AtolOnlineSettings() override;

    /// Base address of the service; ends in "/".
    [[nodiscard]] QString getUrl() const { return url; }
    void setUrl(const QString& value) { url = value; }

    [[nodiscard]] QString getLogin() const { return login; }
    void setLogin(const QString& value) { login = value; }

    [[nodiscard]] QString getPassword() const { return password; }
    void setPassword(const QString& value) { password = value; }

    /// Taxpayer number of the company.
    [[nodiscard]] QString getCompanyInn() const { return companyInn; }
    void setCompanyInn(const QString& value) { companyInn = value; }

    [[nodiscard]] QString getCompanyEmail() const { return companyEmail; }
    void setCompanyEmail(const QString& value) { companyEmail = value; }

    /// Place of settlement.
    [[nodiscard]] QString getPaymentAddress() const { return paymentAddress; }
    void setPaymentAddress(const QString& value) { paymentAddress = value; }

    [[nodiscard]] QString getGroupCode() const { return groupCode; }
    void setGroupCode(const QString& value) { groupCode = value; }

    /// Pause before each status request, in milliseconds.
    [[nodiscard]] int getRequestInterval() const { return requestInterval; }
    void setRequestInterval(int value) { requestInterval = value; }

private:
    QString url;
    QString login;
    QString password;
    QString companyInn;
    QString companyEmail;
    QString paymentAddress;
    QString groupCode;
    int requestInterval = 1000;
};
