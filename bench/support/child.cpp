#include "bench/support/child.h"

#include "bench/support/cores.h"

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace bench {

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

Responder::Responder(Wire wire, Child::Core core)
    : where{0, wire == Wire::Tls ? folder.filePath(u"ca.pem"_s).toStdString() : std::string()}
    , child(QStringLiteral(RESPONDER_FILE),
          QStringList{QStringLiteral(GOLDEN_DIR)} +
              (where.isTls() ? QStringList{QString::fromStdString(where.caFile)} : QStringList()),
          core)
{
    where.port = child.readLine().toInt();
}

} // namespace bench
