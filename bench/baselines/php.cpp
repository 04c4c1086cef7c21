#include "bench/baselines/php.h"

using namespace Qt::Literals::StringLiterals;

namespace bench {

bool Php::isInstalled()
{
    return QProcess::execute(u"php"_s, {u"-r"_s, u"exit(extension_loaded('curl') ? 0 : 1);"_s}) == 0;
}

Php::Php(const Endpoint& endpoint, int numberOfLines)
    : child(u"php"_s, {QStringLiteral(PHP_SCRIPT), QString::fromStdString(endpoint.url()),
                          QString::fromStdString(endpoint.caFile)})
    , lines(numberOfLines)
{
}

std::int64_t Php::registerSale()
{
    secondsOf(1);
    return sign;
}

double Php::secondsOf(int sales)
{
    child.write(QByteArray::number(lines) + ' ' + QByteArray::number(sales) + '\n');
    const QList<QByteArray> answer = child.readLine().split(' ');
    sign = answer.value(1).toLongLong();
    return answer.value(0).toDouble() * 1e-9;
}

} // namespace bench
