#include "tests/frbase/scriptedline.h"

#include "host/exceptions.h"
#include "host/log/log4qt.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

void note(const QString& call)
{
    Log4Qt::LogManager::logger(u"calls"_s, QString())->debug(call);
}

} // namespace

void Script::play()
{
    const char answer = next < answers.size() ? answers[next++] : '?';
    switch (answer) {
    case '+':
        return;
    case '-':
        throw FrNoConnectionException(u"Молчит"_s);
    case 'p':
        throw ComDriverException(u"Порт сломан"_s);
    case 'c':
        throw FrCommandException(u"Иное"_s);
    case 'd':
        throw DriverException(u"Иное"_s);
    case 's':
        throw std::runtime_error("other");
    default:
        ADD_FAILURE() << "a call beyond the script";
    }
}

int ScriptedLine::getPortKind() const
{
    note(u"kind?"_s);
    return kinds.at(asked++ % kinds.size());
}

void ScriptedLine::setBaudRate(int baudRate)
{
    note(u"speed %1"_s.arg(baudRate));
    script.play();
}

void ScriptedDriver::setConnection()
{
    note(u"handshake"_s);
    script.play();
}
