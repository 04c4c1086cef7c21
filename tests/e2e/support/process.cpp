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

using namespace Qt::Literals::StringLiterals;

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
    static const QRegularExpression shownToken(uR"x("token":"(?!\*\*\*)[^"])x"_s);
    EXPECT_FALSE(QString::fromStdString(all).contains(shownToken)) << all;
    if (!isEverythingLogged())
        return ran;
    static const QRegularExpression extra(
        u"^\\d\\d:\\d\\d:\\d\\d\\.\\d{3} (debug|info) .*\n"_s, QRegularExpression::MultilineOption);
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
            values << (value.isValid() ? value.toString() : u"-"_s);
        }
        rows << values.join(u' ');
    }
    return rows;
}

QProcessEnvironment testEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    if (isEverythingLogged())
        environment.insert(u"QT_LOGGING_RULES"_s, u"frdriver*=true"_s);
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
    return run(u"script"_s, {u"-qec"_s, quoted.join(u' '), u"/dev/null"_s});
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
    if (!first.startsWith(u"listening on "_s))
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
