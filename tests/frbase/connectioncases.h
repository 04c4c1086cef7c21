#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <ostream>
#include <string>
#include <vector>

/// One connect(): what holds before, how line and device answer (see Script), and all that can be seen of it.
struct ConnectionCase
{
    std::string name = {};
    QList<int> kinds = {1};
    QList<int> baudRates = {};
    bool searchAllowed = true;
    bool connectedBefore = false;
    int currentBefore = 19200;
    std::string line = {};
    std::string device = {};
    QStringList sequence = {};
    QString outcome = {};
    int currentAfter = 19200;
    bool connectedAfter = false;
    int lineAfter = 19200;
};

using ConnectionCases = std::vector<ConnectionCase>;

void PrintTo(const ConnectionCase& c, std::ostream* out);

[[nodiscard]] ConnectionCases serialLineCases();
/// The port fails at each step.
[[nodiscard]] ConnectionCases portFailureCases();
/// Setting the speed throws what a handshake throws when the device does not answer.
[[nodiscard]] ConnectionCases silentLineCases();
[[nodiscard]] ConnectionCases reconnectionCases();
[[nodiscard]] ConnectionCases lineWithoutSpeedCases();
[[nodiscard]] ConnectionCases portKindCases();
/// An exception that is none of the two known ones, at each step.
[[nodiscard]] ConnectionCases passingThroughCases();

/// The lines of a sequence: calls of line and device, and log lines.
namespace step {

const QString start = QStringLiteral("info: Установка связи с устройством");
const QString kind = QStringLiteral("debug: kind?");
const QString defaultSpeed = QStringLiteral("info: Скорость по умолчанию: 19200");
const QString handshake = QStringLiteral("debug: handshake");
const QString search = QStringLiteral("debug: Перебор скорости подключения к ФР");
const QString searchOff = QStringLiteral("debug: Перебор скорости отключен настройками");
const QString portFailure = QStringLiteral("error: Порт сломан");
const QString lineFailure = QStringLiteral("error: Не удалось установить соединение: Порт сломан");

[[nodiscard]] inline QString speed(int baudRate)
{
    return QStringLiteral("debug: speed %1").arg(baudRate);
}

[[nodiscard]] inline QString trying(int baudRate)
{
    return QStringLiteral("info:  скорость: %1").arg(baudRate);
}

[[nodiscard]] inline QString atCurrent(int baudRate)
{
    return QStringLiteral("info:  установка соединения на скорости: %1").arg(baudRate);
}

/// A serial line whose device does not answer at the default speed begins like this.
const QStringList silentAtDefault{start, kind, kind, defaultSpeed, speed(19200), handshake};

} // namespace step

/// How connect() ends.
namespace outcome {

const QString returned = QStringLiteral("returned");
const QString noLink = QStringLiteral("FrNoConnectionException: Нет связи");
const QString noAnswer = QStringLiteral("FrNoConnectionException: Нет связи с ФР");

} // namespace outcome
