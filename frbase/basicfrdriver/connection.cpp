#include "frbase/basicfrdriver.h"

#include "host/abstractserialdriver.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"
#include "host/records/efrdriver.h"
#include "host/tr.h"

#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int attemptsWithoutSpeed = 3;

FrNoConnectionException noLink()
{
    return FrNoConnectionException(u"Нет связи"_s);
}

FrNoConnectionException noAnswer()
{
    return FrNoConnectionException(u"Нет связи с ФР"_s);
}

// Always asks twice, so that the number of questions does not depend on the kind.
bool hasSpeed(AbstractSerialDriver& port)
{
    const bool thirdKind = port.getPortKind() == 3;
    const bool fourthKind = port.getPortKind() == 4;
    return !thirdKind && !fourthKind;
}

} // namespace

// === Connection and lifetime ===

void BasicFrDriver::portOpen() {}

void BasicFrDriver::portClose() {}

void BasicFrDriver::connect()
{
    logger->info("Установка связи с устройством");
    if (!port) {
        logger->error(u"Ошибка инициализации драйвера порта"_s);
        throw noLink();
    }
    if (hasSpeed(*port))
        connectWithSpeed();
    else
        connectWithoutSpeed();
}

void BasicFrDriver::connectWithSpeed()
{
    logger->info("Скорость по умолчанию: %1", defaultBaudRate);
    if (answersAt(defaultBaudRate)) {
        currentBaudRate = defaultBaudRate;
    } else if (!answersAtAnotherSpeed()) {
        resetSpeed();
        throw noAnswer();
    }
    connectedOnce = true;
}

void BasicFrDriver::connectWithoutSpeed()
{
    for (int attempt = 0; attempt < attemptsWithoutSpeed; ++attempt) {
        try {
            setConnection();
            return;
        } catch (const FrNoConnectionException&) {
            continue;
        } catch (const ComDriverException& e) {
            logger->error("Не удалось установить соединение: %1", e.tr().ru());
            break;
        }
    }
    throw noAnswer();
}

bool BasicFrDriver::answersAt(int baudRate)
{
    try {
        port->setBaudRate(baudRate);
        setConnection();
        return true;
    } catch (const FrNoConnectionException&) {
        return false;
    } catch (const ComDriverException& e) {
        logger->error(e.tr().ru());
        throw noLink();
    }
}

bool BasicFrDriver::answersAtAnotherSpeed()
{
    if (!connectedOnce || settings->isSpeedEnumerate())
        return enumerateSpeed();
    logger->debug("Перебор скорости отключен настройками");
    return connectAtCurrentSpeed();
}

void BasicFrDriver::resetSpeed()
{
    try {
        port->setBaudRate(defaultBaudRate);
    } catch (const ComDriverException&) {
        // The caller is about to report a missing link; why the port refuses the speed adds nothing.
    }
}

void BasicFrDriver::init() {}

void BasicFrDriver::reinitialize()
{
    logger->warn("Реинициализация(технологическое обнуление) не поддерживается устройством");
}

void BasicFrDriver::reboot(EFrDriver::RebootMode /*mode*/)
{
    logger->warn("Перезагрузка не поддерживается устройством");
}

bool BasicFrDriver::setDefaults()
{
    return false;
}
