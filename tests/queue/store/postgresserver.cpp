#include "tests/queue/store/postgresserver.h"

#include "tests/queue/store/testplace.h"
#include "tests/support/process.h"

#include <QSqlDatabase>

#include <csignal>
#include <pwd.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int longestWait = 60'000;

QString programFolder()
{
    const QDir versions(u"/usr/lib/postgresql"_s);
    for (const QString& version : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Reversed)) {
        const QString programs = versions.filePath(version + u"/bin"_s);
        if (QFileInfo(programs + u"/initdb"_s).isExecutable())
            return programs;
    }
    return {};
}

// The server refuses to run as root.
const passwd* otherUser()
{
    return geteuid() == 0 ? getpwnam("nobody") : nullptr;
}

} // namespace

QString PostgresServer::whyMissing()
{
    if (programFolder().isEmpty())
        return u"the package postgresql is not installed"_s;
    if (!QSqlDatabase::isDriverAvailable(u"QPSQL"_s))
        return u"the package libqt6sql6-psql is not installed"_s;
    return {};
}

PostgresServer& PostgresServer::instance()
{
    static PostgresServer server;
    return server;
}

PostgresServer::PostgresServer()
    : folder(folderTemplate())
{
    if (const passwd* user = otherUser();
        user && chown(QFile::encodeName(folder.path()).constData(), user->pw_uid, user->pw_gid) != 0)
        throw std::runtime_error("the folder of the server cannot be given away");
    qputenv("PGSERVICEFILE", QFile::encodeName(folder.filePath(u"services"_s)));
    const auto made =
        launched(u"initdb"_s, {u"-D"_s, folder.filePath(u"data"_s), u"-U"_s, u"till"_s, u"-A"_s, u"trust"_s,
                                  u"-E"_s, u"UTF8"_s, u"--no-locale"_s, u"--no-sync"_s});
    if (!made->waitForFinished(longestWait) || made->exitCode() != 0)
        throw std::runtime_error(made->readAllStandardError().toStdString());
    start();
}

PostgresServer::~PostgresServer()
{
    if (!server)
        return;
    ::kill(static_cast<pid_t>(server->processId()), SIGQUIT);
    server->waitForFinished(longestWait);
}

std::unique_ptr<QProcess> PostgresServer::launched(const QString& program, const QStringList& arguments) const
{
    auto process = std::make_unique<QProcess>();
    const passwd* const user = otherUser();
    process->setWorkingDirectory(folder.path());
    process->setChildProcessModifier([user] {
        if (user && (setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0))
            _exit(1);
        prctl(PR_SET_PDEATHSIG, SIGQUIT);
    });
    process->start(programFolder() + u'/' + program, arguments);
    if (!process->waitForStarted(longestWait))
        throw std::runtime_error(process->errorString().toStdString());
    return process;
}

bool PostgresServer::isReady() const
{
    const QStringList where{u"-q"_s, u"-h"_s, folder.path()};
    return runProcess(programFolder() + u"/pg_isready"_s, where).exitCode == 0;
}

// Right after a kill, sessions that have not noticed yet keep a new server from starting.
void PostgresServer::start()
{
    const bool isUp = comesTrue([this] {
        if (!server || server->state() == QProcess::NotRunning) {
            server = launched(u"postgres"_s,
                {u"-D"_s, folder.filePath(u"data"_s), u"-k"_s, folder.path(), u"-h"_s, {}, u"-c"_s,
                    // Nobody reads its log. When the pipe is full, the server waits.
                    u"log_min_messages=panic"_s});
            server->closeReadChannel(QProcess::StandardOutput);
            server->closeReadChannel(QProcess::StandardError);
        }
        server->waitForFinished(20);
        return isReady();
    });
    if (!isUp)
        throw std::runtime_error("the server does not start");
}

void PostgresServer::kill()
{
    server->kill();
    server->waitForFinished(longestWait);
}

void PostgresServer::run(const QString& statement) const
{
    const ProcessResult result = runProcess(programFolder() + u"/psql"_s,
        {u"-h"_s, folder.path(), u"-U"_s, u"till"_s, u"-d"_s, u"postgres"_s, u"-qXc"_s, statement});
    if (result.exitCode != 0)
        throw std::runtime_error(result.err.toStdString());
}

QString PostgresServer::newPlace()
{
    const QString name = u"place%1"_s.arg(++places);
    run(u"CREATE SCHEMA "_s + name);
    QFile services(folder.filePath(u"services"_s));
    if (!services.open(QIODevice::Append))
        throw std::runtime_error("the service file cannot be written");
    services.write(
        u"[%1]\nhost=%2\nuser=till\ndbname=postgres\noptions=-csearch_path=%1\n"_s.arg(name, folder.path())
            .toUtf8());
    return u"postgresql:service="_s + name;
}
