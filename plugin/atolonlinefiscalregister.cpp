#include "plugin/atolonlinefiscalregister.h"

#include "driver/atolonlinefrdriver.h"
#include "plugin/atolonlinesettings.h"

namespace hw {

namespace {

constexpr int minRequestInterval = 200;
constexpr qsizetype maxPaymentAddressSize = 256;

AtolOnlineSettings& cloud(const QSharedPointer<BasicFrSettings>& settings)
{
    return dynamic_cast<AtolOnlineSettings&>(*settings);
}

} // namespace

AtolOnlineFiscalRegister::AtolOnlineFiscalRegister()
    : BasicFiscalRegister(QSharedPointer<AtolOnlineSettings>::create(), nullptr)
{
    // A web service has no line speed.
    addUnusedProperties({QStringLiteral("speedEnumerate")});
}

AtolOnlineFiscalRegister::~AtolOnlineFiscalRegister() = default;

void AtolOnlineFiscalRegister::init()
{
    legacyDriver = new AtolOnlineFRDriver(getSettings().data());
}

QSharedPointer<AtolOnlineSettings> AtolOnlineFiscalRegister::getSettings() const
{
    return settings.dynamicCast<AtolOnlineSettings>();
}

QString AtolOnlineFiscalRegister::getUrl() const
{
    return cloud(settings).getUrl();
}

void AtolOnlineFiscalRegister::setUrl(const QString& url)
{
    cloud(settings).setUrl(url.endsWith(u'/') ? url : url + u'/');
}

QString AtolOnlineFiscalRegister::getLogin() const
{
    return cloud(settings).getLogin();
}

void AtolOnlineFiscalRegister::setLogin(const QString& login)
{
    cloud(settings).setLogin(login);
}

QString AtolOnlineFiscalRegister::getPassword() const
{
    return cloud(settings).getPassword();
}

void AtolOnlineFiscalRegister::setPassword(const QString& password)
{
    cloud(settings).setPassword(password);
}

int AtolOnlineFiscalRegister::getRequestInterval() const
{
    return cloud(settings).getRequestInterval();
}

void AtolOnlineFiscalRegister::setRequestInterval(int interval)
{
    if (interval >= minRequestInterval)
        cloud(settings).setRequestInterval(interval);
}

QString AtolOnlineFiscalRegister::getEmail() const
{
    return cloud(settings).getCompanyEmail();
}

void AtolOnlineFiscalRegister::setEmail(const QString& email)
{
    cloud(settings).setCompanyEmail(email);
}

QString AtolOnlineFiscalRegister::getInn() const
{
    return cloud(settings).getCompanyInn();
}

void AtolOnlineFiscalRegister::setInn(const QString& inn)
{
    cloud(settings).setCompanyInn(inn);
}

QString AtolOnlineFiscalRegister::getPaymentAddress() const
{
    return cloud(settings).getPaymentAddress();
}

void AtolOnlineFiscalRegister::setPaymentAddress(const QString& address)
{
    if (address.size() <= maxPaymentAddressSize)
        cloud(settings).setPaymentAddress(address);
}

QString AtolOnlineFiscalRegister::getGroupCode() const
{
    return cloud(settings).getGroupCode();
}

void AtolOnlineFiscalRegister::setGroupCode(const QString& code)
{
    cloud(settings).setGroupCode(code);
}

} // namespace hw
