#include "host/log/exchangesecrets.h"

#include "host/log/secrets.h"
#include "host/log/secretsearch.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVariantMap>

#include <cstring>
#include <string_view>

namespace hostruntime::secrets {

using namespace Qt::Literals::StringLiterals;

namespace {

// With QByteArray::indexOf(), preparing the search of a short receipt takes longer than the search.
qsizetype indexOf(const QByteArray& text, std::string_view wanted, qsizetype from = 0)
{
    const char* const begin = text.constData();
    const void* const found =
        memmem(begin + from, static_cast<std::size_t>(text.size() - from), wanted.data(), wanted.size());
    return found ? static_cast<const char*>(found) - begin : -1;
}

// Whether the text is an object without other objects, rather than a part of one.
bool isFlatObject(const QByteArray& text)
{
    return text.startsWith('{') && text.endsWith('}') && text.count('{') == 1 && text.count('"') % 2 == 0 &&
           !text.contains('\\');
}

// The "client" object of a receipt. A long receipt takes longer to parse than to compose, so where the name
// occurs in the text only once, the object is cut out.
QByteArray buyerIn(const QByteArray& receipt)
{
    static constexpr std::string_view name = "\"client\"";
    const qsizetype at = indexOf(receipt, name);
    const qsizetype from = at + std::ssize(name) + 1;
    if (at >= 0 && from <= receipt.size() && indexOf(receipt, name, from) < 0) {
        const QByteArray buyer = receipt.mid(from, receipt.indexOf('}', from) + 1 - from);
        if (isFlatObject(buyer))
            return buyer;
    }
    const QJsonValue buyer = QJsonDocument::fromJson(receipt)["receipt"_L1]["client"_L1];
    return QJsonDocument(buyer.toObject()).toJson(QJsonDocument::Compact);
}

bool hasContact(const QByteArray& buyer)
{
    return indexOf(buyer, "\"email\"") >= 0 || indexOf(buyer, "\"phone\"") >= 0;
}

// Where a password stands in an address; ends at 0 when there is none.
Span passwordPlace(const QString& address)
{
    const qsizetype scheme = address.indexOf("://"_L1);
    const qsizetype at = address.lastIndexOf(u'@');
    const qsizetype colon = address.indexOf(u':', scheme < 0 ? 0 : scheme + 3);
    return colon < 0 || colon > at ? Span() : Span{colon + 1, at};
}

} // namespace

void addFromRequest(const QUrl& url, const QHash<QString, QString>& headers, const QByteArray& body)
{
    addCredential(url.password());
    for (const QString& token : tokensIn(headers))
        addToken(token);
    if (body.isEmpty())
        return;
    if (indexOf(body, "\"pass\"") >= 0) {
        const QJsonDocument login = QJsonDocument::fromJson(body);
        addCredential(login["pass"_L1].toString());
        addLogin(login["login"_L1].toString());
    }
    if (const QByteArray buyer = buyerIn(body); hasContact(buyer))
        addBuyer(buyer);
}

QStringList tokensIn(const QHash<QString, QString>& headers)
{
    QStringList tokens;
    for (auto entry = headers.begin(); entry != headers.end(); ++entry) {
        if (entry.key().compare("token"_L1, Qt::CaseInsensitive) == 0)
            tokens.append(entry.value());
    }
    return tokens;
}

void addFromReply(const QByteArray& body, const QVariant& parsed)
{
    if (parsed.isValid()) {
        addToken(parsed.toMap().value(u"token"_s).toString());
        return;
    }
    // A reply that was cut off is not JSON, and may hold a token all the same.
    static const QRegularExpression token(uR"x("token"\s*:\s*"((?:[^"\\]|\\.)*+))x"_s);
    auto found = token.globalMatch(QString::fromUtf8(body));
    while (found.hasNext())
        addToken(found.next().captured(1));
}

QStringList passwordsIn(const QString& address)
{
    const Span place = passwordPlace(address);
    if (place.end == 0)
        return {};
    const QString password = address.sliced(place.begin, place.end - place.begin);
    return {password, QUrl::fromPercentEncoding(password.toUtf8())};
}

QString withoutPassword(const QString& address)
{
    const Span place = passwordPlace(address);
    return place.end == 0 ? address
                          : address.first(place.begin) + mask.toString() + address.sliced(place.end);
}

} // namespace hostruntime::secrets
