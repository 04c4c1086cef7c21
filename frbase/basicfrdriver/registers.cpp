#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/efrdriver.h"
#include "host/records/fiscalinfo.h"

#include <QMap>
#include <QString>

// === Registers and document numbers ===

KkmRegisters BasicFrDriver::getKkmRegisterBeg()
{
    return {};
}

KkmRegisters BasicFrDriver::getKkmRegisterEnd()
{
    return {};
}

QMap<EFrDriver::FontTypes, int> BasicFrDriver::getBandWidthFonts()
{
    return {};
}

QString BasicFrDriver::getInn()
{
    return {};
}

bool BasicFrDriver::setGraphicCliche(const QString& /*file*/)
{
    logger->info("Установка графического клише не поддерживается устройством");
    return false;
}

void BasicFrDriver::clearGraphicCliche() {}

QString BasicFrDriver::getFrDocNum()
{
    return {};
}

QString BasicFrDriver::getFrDocNumAfterClosing()
{
    return {};
}

QString BasicFrDriver::getFrDocCopy(long /*number*/)
{
    return {};
}

int BasicFrDriver::getFrDocOffset()
{
    return -1;
}
