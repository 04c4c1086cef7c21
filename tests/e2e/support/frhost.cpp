#include "tests/e2e/support/frhost.h"

#include "tests/support/schema.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isEverythingLogged()
{
    return !qEnvironmentVariableIsEmpty("E2E_LOG_EVERYTHING");
}

QProcessEnvironment environment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    // The user of this machine may have a configuration.
    environment.insert(u"XDG_CONFIG_HOME"_s, u"/nonexistent"_s);
    environment.remove(u"FRHOST_CONFIG"_s);
    // The journal of these tests is not the user's.
    static const QTemporaryDir state;
    environment.insert(u"XDG_STATE_HOME"_s, state.path());
    environment.remove(u"STATE_DIRECTORY"_s);
    if (isEverythingLogged())
        environment.insert(u"QT_LOGGING_RULES"_s, u"frdriver*=true"_s);
    return environment;
}

void expectNoSecret(const QString& all)
{
    EXPECT_THAT(all.toStdString(), testing::Not(testing::HasSubstr(shopPassword)));
    static const QRegularExpression shownToken(uR"x("token":"(?!\*\*\*)[^"])x"_s);
    EXPECT_FALSE(all.contains(shownToken)) << all.toStdString();
}

QString withoutAdditionalLines(QString err)
{
    static const QRegularExpression additional(
        u"^\\d{4}-\\d\\d-\\d\\dT[\\d:.+Z-]+ \\[\\d+\\] (debug|info) .*\n"_s,
        QRegularExpression::MultilineOption);
    return isEverythingLogged() ? err.remove(additional) : err;
}

QList<QJsonObject> objectsIn(const QString& out)
{
    QList<QJsonObject> objects;
    for (const QString& line : out.split(u'\n', Qt::SkipEmptyParts))
        objects << QJsonDocument::fromJson(line.toUtf8()).object();
    return objects;
}

bool isUnreached(const QJsonObject& line)
{
    return line.value(u"error"_s)[u"message"].toString().endsWith("the run ended before it"_L1);
}

// Every line that has its end, of the commands whose format is published.
void expectPublishedFormat(const QStringList& arguments, const QString& out)
{
    const QStringList published{u"sell"_s, u"send"_s, u"collect"_s, u"check"_s, u"doctor"_s, u"queue"_s};
    const bool hasFormat = std::any_of(published.begin(), published.end(),
        [&](const QString& command) { return arguments.contains(command); });
    if (!hasFormat || !arguments.contains(u"--json"_s) || arguments.contains(u"--openmetrics"_s))
        return;
    QStringList lines = out.split(u'\n');
    lines.removeLast();
    for (const QString& line : lines)
        EXPECT_EQ(schemaProblem(QStringLiteral(RESULT_SCHEMA), line.toUtf8()), QString())
            << line.toStdString();
}

} // namespace

QList<QJsonObject> Ran::lines() const
{
    QList<QJsonObject> objects;
    for (const QJsonObject& object : objectsIn(out)) {
        if (!object.contains(u"failure"_s) && !object.contains(u"summary"_s) && !isUnreached(object))
            objects << object;
    }
    return objects;
}

QJsonObject Ran::lineWith(const QString& key) const
{
    for (const QJsonObject& object : objectsIn(out)) {
        if (object.contains(key))
            return object;
    }
    return {};
}

QStringList Ran::unreached() const
{
    QStringList ids;
    for (const QJsonObject& object : objectsIn(out)) {
        if (isUnreached(object))
            ids << object.value(u"id"_s).toString();
    }
    return ids;
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

Running::Running(const QString& program, const QStringList& arguments, const QString& outputFile)
    : Process(program, arguments, {environment(), outputFile})
    , given(arguments)
{
}

Ran Running::end()
{
    const ProcessResult result = Process::end();
    const Ran all{result.exitCode, QString::fromUtf8(result.out), QString::fromUtf8(result.err)};
    expectNoSecret(all.out + all.err);
    expectPublishedFormat(given, all.out);
    return {all.exitCode, all.out, withoutAdditionalLines(all.err)};
}

Ran run(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    Running running(program, arguments);
    running.giveInput(input);
    return running.end();
}

Ran runOnTerminal(const QString& program, const QStringList& arguments)
{
    QStringList quoted;
    for (const QString& argument : QStringList{program} + arguments)
        quoted << u'\'' + argument + u'\'';
    return run(u"env"_s, {u"TERM=xterm"_s, u"script"_s, u"-qec"_s, quoted.join(u' '), u"/dev/null"_s});
}

QString frhostProgram()
{
    return QStringLiteral(FRHOST);
}
