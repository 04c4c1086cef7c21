#include "frbase/basicfrdriver.h"

#include "host/abstractserialdriver.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"

#include <QList>
#include <QString>

using namespace Qt::Literals::StringLiterals;

// === For drivers on this base: handshake and speeds ===

void BasicFrDriver::setConnection() {}

bool BasicFrDriver::enumerateSpeed()
{
    logger->debug("Перебор скорости подключения к ФР");
    const QList<int> speeds = baudRates; // a handshake may change the list
    for (const int baudRate : speeds) {
        if (baudRate == defaultBaudRate)
            continue;
        try {
            port->setBaudRate(baudRate);
            logger->info(" скорость: %1", baudRate);
            setConnection();
        } catch (const FrNoConnectionException&) {
            continue;
        } catch (const ComDriverException&) {
            continue;
        }
        currentBaudRate = baudRate;
        return true;
    }
    return false;
}

bool BasicFrDriver::connectAtCurrentSpeed()
{
    logger->info(" установка соединения на скорости: %1", currentBaudRate);
    return answersAt(currentBaudRate);
}

void BasicFrDriver::isPortReady() const
{
    if (!port)
        throw FrNoConnectionException(u"Ошибка инициализации драйвера порта"_s);
    if (portClosed)
        throw FrNoConnectionException(u"Необходимо открыть порт"_s);
}
