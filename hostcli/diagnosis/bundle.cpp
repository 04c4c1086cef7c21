#include "host/log/secrets.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/diagnosis/examination.h"
#include "hostcli/diagnosis/maskedconfiguration.h"
#include "hostcli/diagnosis/report.h"
#include "hostcli/terminal/console.h"
#include "till/text.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

namespace secrets = hostruntime::secrets;

constexpr qint64 mostOfALog = 1024 * 1024;

// What others may read of the end of a file.
QByteArray endOf(const QString& path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > mostOfALog) {
        file.seek(file.size() - mostOfALog);
        file.readLine();
    }
    return secrets::masked(QString::fromUtf8(file.readAll()), secrets::Audience::Anyone).toUtf8();
}

QByteArray logOf(const CommandLine& line)
{
    if (!line.logFile.isEmpty())
        return endOf(line.logFile);
    return Text::tr(
               "No log was named. If there is one, make the bundle again with --log-file FILE; if frhost "
               "runs as a service, add the output of journalctl.")
               .toUtf8() +
           '\n';
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        throw Failure(ExitCode::LocalFailure, Text::tr("%1: %2").arg(path, file.errorString()));
}

QByteArray packed(const QString& folder)
{
    QProcess tar;
    tar.start(u"tar"_s,
        {u"--create"_s, u"--gzip"_s, u"--owner=0"_s, u"--group=0"_s, u"--mode=u=rw"_s, u"--directory"_s,
            folder, u"doctor.txt"_s, u"configuration.ini"_s, u"log.txt"_s, u"exchanges.jsonl"_s});
    tar.closeWriteChannel();
    const bool hasEnded = tar.waitForFinished(-1);
    if (!hasEnded || tar.exitStatus() != QProcess::NormalExit || tar.exitCode() != 0)
        throw Failure(ExitCode::LocalFailure,
            Text::tr("tar: %1").arg(
                hasEnded ? QString::fromLocal8Bit(tar.readAllStandardError()) : tar.errorString()));
    return tar.readAllStandardOutput();
}

void writePrivate(const QString& path, const QByteArray& content)
{
    // Nobody else can open it before it has its mode.
    QFile::remove(path);
    write(path, {});
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    write(path, content);
}

} // namespace

ExitCode bundle(const CommandLine& line, Output& output)
{
    const Examination examination = examinedWithMachine(line);
    const QTemporaryDir folder;
    const auto put = [&](const char* name, const QByteArray& content) {
        const QString text = secrets::masked(QString::fromUtf8(content), secrets::Audience::Anyone);
        write(folder.filePath(QString::fromLatin1(name)), text.toUtf8());
    };
    put("doctor.txt", textOf(worstFirst(examination.findings)));
    put("configuration.ini", maskedConfiguration(configFileOf(line, configFolders())));
    put("log.txt", logOf(line));
    const QString exchanges = exchangeFileOf(line);
    put("exchanges.jsonl", endOf(exchanges.isEmpty() ? exchanges : exchanges + u".1"_s) + endOf(exchanges) +
                               examination.exchanges);
    writePrivate(line.bundle, packed(folder.path()));
    output.write(line.bundle.toUtf8() + '\n');
    Console::instance().line(Text::tr("Passwords, tokens, logins and buyers' contacts are masked. Look "
                                      "through it before you send it on."),
        Urgency::Notice);
    if (line.logFile.isEmpty())
        Console::instance().line(QString::fromUtf8(logOf(line)).trimmed(), Urgency::Notice);
    return ExitCode::Success;
}

} // namespace frhost
