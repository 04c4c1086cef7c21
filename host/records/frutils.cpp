#include "host/records/frutils.h"

#include <QRegularExpression>
#include <QtEndian>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype maxCodeSize = 32;
constexpr qsizetype gtinSize = 6;

// Leading bytes of the code, which tell its kind.
constexpr quint16 dataMatrix = 0x444D;
constexpr quint16 ean13 = 0x450D;
constexpr quint16 furSign = 0x5246;

QByteArray bigEndian(quint64 number, qsizetype size)
{
    QByteArray bytes(sizeof number, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes.last(size);
}

QByteArray productCode(quint16 kind, const QString& gtin, const QString& serial)
{
    const QByteArray code =
        bigEndian(kind, sizeof kind) + bigEndian(gtin.toULongLong(), gtinSize) + serial.toLatin1();
    return code.first(std::min(code.size(), maxCodeSize));
}

// Scanners put the symbology identifier and the leading FNC1 of a GS1 symbol in front of the data.
QString withoutPrefix(QString code)
{
    static const QRegularExpression prefix(u"^(?:\\](?:d2|C1|Q3|e0))?\\x1D?"_s);
    return code.remove(prefix);
}

QByteArray tobaccoBlock(const QString& code)
{
    static const QRegularExpression form(u"^01(\\d{14})21([^\\x1D]{7})\\x1D?8005(\\d{6})"_s);
    const auto match = form.match(code);
    if (!match.hasMatch())
        return {};
    return productCode(dataMatrix, match.captured(1), match.captured(2) + match.captured(3));
}

// GTIN, serial and price without identifiers, then four characters of a signature that is not part of the
// code.
QByteArray tobaccoPack(const QString& code)
{
    static const QRegularExpression form(u"^(\\d{14})(.{7})(.{4})(?:.{4})?$"_s);
    const auto match = form.match(code);
    if (!match.hasMatch())
        return {};
    return productCode(dataMatrix, match.captured(1), match.captured(2) + match.captured(3));
}

QByteArray gs1DataMatrix(const QString& code)
{
    static const QRegularExpression form(u"^01(\\d{14})21([^\\x1D]+)(\\x1D?)"_s);
    static const QRegularExpression withoutSeparators(u"^(.{13})9[123]"_s);
    const auto match = form.match(code);
    if (!match.hasMatch())
        return {};
    QString serial = match.captured(2);
    if (match.capturedLength(3) == 0) {
        if (const auto glued = withoutSeparators.match(serial); glued.hasMatch())
            serial = glued.captured(1);
    }
    return productCode(dataMatrix, match.captured(1), serial);
}

QByteArray eanCode(const QString& code)
{
    static const QRegularExpression form(u"^\\d{13}$"_s);
    return form.match(code).hasMatch() ? productCode(ean13, code, {}) : QByteArray();
}

QByteArray furCode(const QString& code)
{
    const QByteArray bytes = bigEndian(furSign, sizeof furSign) + code.toLatin1();
    return bytes.first(std::min(bytes.size(), maxCodeSize));
}

bool looksLikeFurSign(const QString& code)
{
    static const QRegularExpression form(u"^[A-Z]{2}-\\d{6}-[A-Z0-9]{10}$"_s);
    return form.match(code).hasMatch();
}

bool isAscii(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

QByteArray rawCode(const QString& scan, ExciseMarkType type)
{
    const QString code = withoutPrefix(scan);
    if (code.isEmpty() || !isAscii(code))
        return {};
    if (type == ExciseMarkType::Fur || looksLikeFurSign(code))
        return furCode(code);
    for (const auto form : {tobaccoBlock, gs1DataMatrix, tobaccoPack, eanCode}) {
        if (const QByteArray bytes = form(code); !bytes.isEmpty())
            return bytes;
    }
    return {};
}

} // namespace

FdRequisite FrUtils::createNomenclatureCodeRequisite(const QString& markingCode, ExciseMarkType type)
{
    return FdRequisite::fromRawData(EFrDriver::NomenclatureCode, rawCode(markingCode, type));
}
