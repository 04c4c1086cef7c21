#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"

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

QMap<EFrDriver::FontTypes, int> BasicFrDriver::getBandWidthFonts()
{
    return {};
}

void BasicFrDriver::beep()
{
    logger->info("Подача звукового сигнала не поддерживается устройством");
}

void BasicFrDriver::drawerOpen() {}

bool BasicFrDriver::isCashDrawerOpened() const
{
    return false;
}

void BasicFrDriver::cutAfterChecksClosing() {}

void BasicFrDriver::cutPaper() {}

void BasicFrDriver::barcodePrint(const Barcode& /*barcode*/)
{
    logger->warn("Печать штрих-кода не поддерживается устройством");
}

void BasicFrDriver::printLogo(const Logo& /*logo*/) {}

bool BasicFrDriver::setCliche(const QList<QString>& /*lines*/)
{
    logger->info("Программирование клише не поддерживается устройством");
    return false;
}

bool BasicFrDriver::setTail(const QList<QString>& /*lines*/)
{
    logger->info("Программирование рекламного текста не поддерживается устройством");
    return false;
}

bool BasicFrDriver::setGraphicCliche(const QString& /*file*/)
{
    logger->info("Установка графического клише не поддерживается устройством");
    return false;
}

void BasicFrDriver::clearGraphicCliche() {}

void BasicFrDriver::setProgramCliche(const QList<QString>& /*lines*/) {}

void BasicFrDriver::setCheckTemplate(int /*templateNumber*/, const QString& /*text*/) {}

QJsonObject BasicFrDriver::loadImage(int /*imageNumber*/, const QString& /*file*/)
{
    return {};
}

void BasicFrDriver::printCodePageSymbols(int /*codePage*/) {}

void BasicFrDriver::setSymbolsMapping(const QMap<QChar, QChar>& /*mapping*/) {}

void BasicFrDriver::addPostLines(const QList<FrPrintData>& /*lines*/)
{
    logger->warn("Печать дополнительных элементов при закрытии чека не поддерживается");
}

void BasicFrDriver::clearLinesForPrint() {}

void BasicFrDriver::checkPaper() const {}
