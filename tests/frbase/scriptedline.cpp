#include "tests/frbase/scriptedline.h"

#include "host/exceptions.h"
#include "host/log/log4qt.h"

#include <gtest/gtest.h>

#include <stdexcept>

void Script::play()
{
    const char answer = next < answers.size() ? answers[next++] : '?';
    switch (answer) {
    case '+':
        return;
    case '-':
        throw FrNoConnectionException(QStringLiteral("Молчит"));
    case 'p':
        throw ComDriverException(QStringLiteral("Порт сломан"));
    case 'c':
        throw FrCommandException(QStringLiteral("Иное"));
    case 'd':
        throw DriverException(QStringLiteral("Иное"));
    case 's':
        throw std::runtime_error("other");
    default:
        ADD_FAILURE() << "a call that is not in the script";
    }
}

void note(const QString& call)
{
    Log4Qt::LogManager::logger(QStringLiteral("calls"), QString())->debug(call);
}

int ScriptedLine::getPortKind() const
{
    note(QStringLiteral("kind?"));
    return kinds.at(asked++ % kinds.size());
}

void ScriptedLine::setBaudRate(int newBaudRate)
{
    note(QStringLiteral("speed %1").arg(newBaudRate));
    script.play();
    baudRate = newBaudRate;
}

void ScriptedDriver::setConnection()
{
    note(QStringLiteral("handshake"));
    script.play();
}
