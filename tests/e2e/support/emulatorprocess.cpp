#include "tests/e2e/support/emulatorprocess.h"

#include "tests/e2e/support/frhost.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <csignal>
#include <iostream>
#include <stdexcept>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

EmulatorProcess::EmulatorProcess(const QStringList& arguments)
{
    const QString password = QString::fromLatin1(shopPassword);
    process.emplace(u"timeout"_s, QStringList{u"600"_s, QStringLiteral(FREMULATOR), u"--login"_s, u"shop"_s,
                                      u"--password"_s, password, u"--group"_s, u"shop_1"_s} +
                                      arguments);
    QByteArray said;
    while (!said.contains('\n')) {
        const QByteArray more = process->moreOutput();
        if (more.isEmpty())
            throw std::runtime_error("the emulator said: " + (said + process->end().err).toStdString());
        said += more;
    }
    const QString firstLine = QString::fromUtf8(said.left(said.indexOf('\n')));
    if (!firstLine.startsWith(u"listening on "_s))
        throw std::runtime_error("the emulator said: " + said.toStdString());
    address = firstLine.section(u' ', -1);
}

EmulatorProcess::~EmulatorProcess()
{
    stop();
}

void EmulatorProcess::stop()
{
    if (!process)
        return;
    process->signal(SIGTERM); // unlike SIGKILL, passed on by `timeout`
    std::cerr << process->end().err.toStdString();
    process.reset();
}

// Without -f, because the answer tells what went wrong.
QJsonObject EmulatorProcess::api(const QString& path, const QStringList& arguments) const
{
    const QString url = QUrl(address).resolved(QUrl(u"/_emulator/"_s + path)).toString();
    const Ran asked = run(u"curl"_s, QStringList{u"-sS"_s, url} + arguments);
    const QJsonObject answer = QJsonDocument::fromJson(asked.out.toUtf8()).object();
    if (asked.exitCode != 0 || answer.isEmpty() || answer.contains(u"error"_s))
        throw std::runtime_error("the emulator said: " + (asked.err + asked.out).toStdString());
    return answer;
}

void EmulatorProcess::addFault(const QByteArray& members) const
{
    std::ignore = api(u"faults"_s, {u"-d"_s, u'{' + QString::fromUtf8(members) + u'}'});
}

void EmulatorProcess::clearFaults() const
{
    std::ignore = api(u"faults"_s, {u"-X"_s, u"DELETE"_s});
}

QString EmulatorProcess::expect(const QString& query) const
{
    return api(u"expect?"_s + query).value(u"reason"_s).toString();
}

QStringList EmulatorProcess::exchanges(const QString& key) const
{
    QStringList values;
    for (const QJsonValue& exchange : api(u"exchanges?limit=100"_s).value(u"exchanges"_s).toArray())
        values.prepend(exchange.toObject().value(key).toString());
    return values;
}

QString EmulatorProcess::calls() const
{
    return exchanges(u"endpoint"_s).join(u' ');
}

QString EmulatorProcess::requests() const
{
    return exchanges(u"request"_s).join(u'\n');
}
