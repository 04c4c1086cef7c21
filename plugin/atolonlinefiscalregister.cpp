#include "plugin/atolonlinefiscalregister.h"

#include "driver/atolonlinefrdriver.h"
#include "plugin/atolonlinesettings.h"

using namespace Qt::Literals::StringLiterals;

namespace hw {

namespace {

constexpr int minRequestInterval = 200;
constexpr qsizetype maxPaymentAddressSize = 256;

} // namespace

AtolOnlineFiscalRegister::AtolOnlineFiscalRegister()
    : BasicFiscalRegister(QSharedPointer<AtolOnlineSettings>::create(), nullptr)
{
    // A web service has no line speed.
    addUnusedProperties({u"speedEnumerate"_s});
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
    return getSettings()->getUrl();
}

void AtolOnlineFiscalRegister::setUrl(const QString& url)
{
    getSettings()->setUrl(url.endsWith(u'/') ? url : url + u'/');
}

QString AtolOnlineFiscalRegister::getLogin() const
{
    return getSettings()->getLogin();
}

void AtolOnlineFiscalRegister::setLogin(const QString& login)
{
    getSettings()->setLogin(login);
}

QString AtolOnlineFiscalRegister::getPassword() const
{
    return getSettings()->getPassword();
}

void AtolOnlineFiscalRegister::setPassword(const QString& password)
{
    getSettings()->setPassword(password);
}

int AtolOnlineFiscalRegister::getRequestInterval() const
{
    return getSettings()->getRequestInterval();
}

void AtolOnlineFiscalRegister::setRequestInterval(int interval)
{
    if (interval >= minRequestInterval)
        getSettings()->setRequestInterval(interval);
}

QString AtolOnlineFiscalRegister::getEmail() const
{
    return getSettings()->getCompanyEmail();
}

void AtolOnlineFiscalRegister::setEmail(const QString& email)
{
    getSettings()->setCompanyEmail(email);
}

QString AtolOnlineFiscalRegister::getInn() const
{
    return getSettings()->getCompanyInn();
}

void AtolOnlineFiscalRegister::setInn(const QString& inn)
{
    getSettings()->setCompanyInn(inn);
}

QString AtolOnlineFiscalRegister::getPaymentAddress() const
{
    return getSettings()->getPaymentAddress();
}

void AtolOnlineFiscalRegister::setPaymentAddress(const QString& address)
{
    if (address.size() <= maxPaymentAddressSize)
        getSettings()->setPaymentAddress(address);
}

QString AtolOnlineFiscalRegister::getGroupCode() const
{
    return getSettings()->getGroupCode();
}

void AtolOnlineFiscalRegister::setGroupCode(const QString& code)
{
    getSettings()->setGroupCode(code);
}

} // namespace hw
