#include "bench/support/child.h"

#include "bench/support/cores.h"

#include <stdexcept>

namespace bench {

using namespace Qt::Literals::StringLiterals;

Child::Child(const QString& program, const QStringList& arguments, Core core)
{
    if (core == Core::OfItsOwn)
        process.setChildProcessModifier([] { stayOnCore(1); });
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
}

Child::~Child()
{
    process.closeWriteChannel();
    process.waitForFinished();
}

QByteArray Child::readLine()
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(-1))
            throw std::runtime_error(process.program().toStdString() + " has ended");
    }
    return process.readLine().trimmed();
}

Responder::Responder(Wire wire, const QStringList& furtherArguments, Child::Core core)
    : child(QStringLiteral(RESPONDER_FILE),
          QStringList{u"--answers"_s, QStringLiteral(GOLDEN_DIR)} +
              (wire == Wire::Tls ? QStringList{u"--tls"_s, folder.filePath(u"ca.pem"_s)} : QStringList()) +
              furtherArguments,
          core)
{
    where.port = child.readLine().toInt();
    if (wire == Wire::Tls)
        where.caFile = folder.filePath(u"ca.pem"_s).toStdString();
}

bool Php::isInstalled()
{
    return QProcess::execute(u"php"_s, {u"-r"_s, u"exit(extension_loaded('curl') ? 0 : 1);"_s}) == 0;
}

Php::Php(const Endpoint& endpoint)
    : child(u"php"_s, {QStringLiteral(PHP_SCRIPT), QString::fromStdString(endpoint.url()),
                          QString::fromStdString(endpoint.caFile)})
{
}

Php::Result Php::registerSales(int lines, int count)
{
    child.write(QByteArray::number(lines) + ' ' + QByteArray::number(count) + '\n');
    const QList<QByteArray> answer = child.readLine().split(' ');
    return {answer.value(0).toDouble() * 1e-9, answer.value(1).toLongLong()};
}

} // namespace bench
