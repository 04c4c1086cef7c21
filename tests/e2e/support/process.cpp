#include "tests/e2e/support/process.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QUrl>

#include <gmock/gmock.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace {

constexpr int limitMilliseconds = 120000;

Ran finished(QProcess& process, const QByteArray& input)
{
    process.setProcessEnvironment(testEnvironment());
    process.start();
    if (!process.waitForStarted())
        throw std::runtime_error("cannot start " + process.program().toStdString());
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(limitMilliseconds)) {
        process.kill();
        process.waitForFinished();
        throw std::runtime_error(process.program().toStdString() + " did not end");
    }
    return withoutSecrets({process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())});
}

} // namespace

bool isEverythingLogged()
{
    return !qEnvironmentVariableIsEmpty("E2E_LOG_EVERYTHING");
}

Ran withoutSecrets(const Ran& ran)
{
    using testing::HasSubstr;
    using testing::Not;
    const std::string all = (ran.out + ran.err).toStdString();
    EXPECT_THAT(all, Not(HasSubstr(shopPassword)));
    static const QRegularExpression shownToken(QStringLiteral(R"x("token":"(?!\*\*\*)[^"])x"));
    EXPECT_FALSE(QString::fromStdString(all).contains(shownToken)) << all;
    if (!isEverythingLogged())
        return ran;
    static const QRegularExpression extra(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d{3} (debug|info) .*\n"),
        QRegularExpression::MultilineOption);
    return {ran.exitCode, ran.out, QString(ran.err).remove(extra)};
}

QList<QJsonObject> Ran::lines() const
{
    QList<QJsonObject> objects;
    for (const QString& line : out.split(u'\n', Qt::SkipEmptyParts))
        objects << QJsonDocument::fromJson(line.toUtf8()).object();
    return objects;
}

QStringList Ran::columns(const QStringList& keys) const
{
    QStringList rows;
    for (const QJsonObject& object : lines()) {
        QStringList values;
        for (const QString& key : keys) {
            const QVariant value = object.value(key).toVariant();
            values << (value.isValid() ? value.toString() : QStringLiteral("-"));
        }
        rows << values.join(u' ');
    }
    return rows;
}

QProcessEnvironment testEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    if (isEverythingLogged())
        environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("frdriver*=true"));
    return environment;
}

Ran run(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    return finished(process, input);
}

Ran runOnTerminal(const QString& program, const QStringList& arguments)
{
    QStringList quoted;
    for (const QString& argument : QStringList{program} + arguments)
        quoted << u'\'' + argument + u'\'';
    return run(
        QStringLiteral("script"), {QStringLiteral("-qec"), quoted.join(u' '), QStringLiteral("/dev/null")});
}

Ran runInto(const QString& file, const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setStandardOutputFile(file);
    process.setProgram(program);
    process.setArguments(arguments);
    return finished(process, {});
}

EmulatorProcess::EmulatorProcess(const QStringList& arguments)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    QList<QByteArray> texts{
        "timeout", "600", FREMULATOR, "--login", "shop", "--password", shopPassword, "--group", "shop_1"};
    for (const QString& argument : arguments)
        texts << argument.toUtf8();
    QList<char*> argv;
    for (QByteArray& text : texts)
        argv << text.data();
    argv << nullptr;
    process = fork();
    if (process == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    close(ends[1]);
    std::string line;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';)
        line += c;
    close(ends[0]);
    const QString first = QString::fromStdString(line);
    if (!first.startsWith(QStringLiteral("listening on ")))
        throw std::runtime_error("the emulator said: " + line);
    address = first.section(u' ', -1);
}

EmulatorProcess::~EmulatorProcess()
{
    stop();
}

void EmulatorProcess::stop()
{
    if (process <= 0)
        return;
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    process = -1;
}

// Without -f, because the answer tells what went wrong.
QJsonObject EmulatorProcess::api(const QString& path, const QStringList& arguments) const
{
    const QString url = QUrl(address).resolved(QUrl(QStringLiteral("/_emulator/") + path)).toString();
    const Ran asked = run(QStringLiteral("curl"), QStringList{QStringLiteral("-sS"), url} + arguments);
    const QJsonObject answer = QJsonDocument::fromJson(asked.out.toUtf8()).object();
    if (asked.exitCode != 0 || answer.isEmpty() || answer.contains(QStringLiteral("error")))
        throw std::runtime_error("the emulator said: " + (asked.err + asked.out).toStdString());
    return answer;
}

void EmulatorProcess::addFault(const QByteArray& members) const
{
    std::ignore =
        api(QStringLiteral("faults"), {QStringLiteral("-d"), u'{' + QString::fromUtf8(members) + u'}'});
}

void EmulatorProcess::clearFaults() const
{
    std::ignore = api(QStringLiteral("faults"), {QStringLiteral("-X"), QStringLiteral("DELETE")});
}

QString EmulatorProcess::expect(const QString& query) const
{
    return api(QStringLiteral("expect?") + query).value(QStringLiteral("reason")).toString();
}

QStringList EmulatorProcess::exchanges(const QString& key) const
{
    QStringList values;
    for (const QJsonValue& exchange :
        api(QStringLiteral("exchanges?limit=100")).value(QStringLiteral("exchanges")).toArray())
        values.prepend(exchange.toObject().value(key).toString());
    return values;
}

QString EmulatorProcess::calls() const
{
    return exchanges(QStringLiteral("endpoint")).join(u' ');
}

QString EmulatorProcess::requests() const
{
    return exchanges(QStringLiteral("request")).join(u'\n');
}
