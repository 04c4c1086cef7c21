#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/efrdriver.h"

#include <QList>

// === Fonts, sound and drawer ===

void BasicFrDriver::setFont(const QList<EFrDriver::FontTypes>& /*fonts*/)
{
    logger->debug("Установка шрифта не поддерживается устройством");
}

void BasicFrDriver::setLineSpacing(int spacing)
{
    if (spacing != -1)
        logger->debug("Установка межстрочного интервала не поддерживается устройством");
}

void BasicFrDriver::resetFont() {}

bool BasicFrDriver::loadFont(const Font& /*font*/)
{
    return false;
}

void BasicFrDriver::beep()
{
    logger->info("Подача звукового сигнала не поддерживается устройством");
}

void BasicFrDriver::drawerOpen() {}
