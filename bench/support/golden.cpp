#include "bench/support/golden.h"

#include "bench/baselines/rawsocket.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

constexpr QByteArrayView goldenTime = "05.03.2024 14:07:09";
constexpr int longestFile = 100;

QByteArray withGoldenTime(QByteArray request)
{
    static const QByteArray key = "\"timestamp\":\"";
    const qsizetype at = request.lastIndexOf(key);
    return at < 0 ? request : request.replace(at + key.size(), goldenTime.size(), goldenTime);
}

QByteArray goldenFile(const QString& name)
{
    QFile file(QStringLiteral(GOLDEN_DIR "/") + name);
    require("golden", file.open(QIODevice::ReadOnly), name);
    return file.readAll();
}

bool isGolden(const QByteArray& request, int lines)
{
    if (lines <= longestFile)
        return request == goldenFile(u"request-%1.json"_s.arg(lines));
    const QByteArray hash = QCryptographicHash::hash(request, QCryptographicHash::Sha256).toHex();
    return goldenFile(u"requests.sha256"_s)
        .contains(hash + "  request-" + QByteArray::number(lines) + ".json\n");
}

} // namespace

void requireGolden(const char* name, const QByteArray& request, int lines)
{
    const QByteArray timed = withGoldenTime(request);
    if (isGolden(timed, lines))
        return;
    QFile actual(QDir::temp().filePath(u"request-%1.json"_s.arg(lines)));
    if (actual.open(QIODevice::WriteOnly))
        actual.write(timed);
    actual.close();
    require(name, false, u"not the golden text; what was sent is in "_s + actual.fileName());
}

void requireGoldenSale(const char* name, Contender& contender, const Endpoint& endpoint, int lines)
{
    RawSocket responder(endpoint, 0);
    std::ignore = responder.lastReceipt();
    require(name, contender.registerSale() == goldenSign, u"another answer"_s);
    requireGolden(name, responder.lastReceipt(), lines);
}

void require(const char* name, bool condition, const QString& what)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s: %s\n", name, qPrintable(what));
    std::exit(EXIT_FAILURE);
}

} // namespace bench
