#include "tests/e2e/support/shop.h"

#include <QFile>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

Shop::Shop(const QString& url)
    : settings{{u"url"_s, url}, {u"login"_s, u"shop"_s}, {u"password"_s, QString::fromLatin1(shopPassword)},
          {u"groupCode"_s, u"shop_1"_s}, {u"inn"_s, u"7700000009"_s}, {u"email"_s, u"shop@example.com"_s},
          {u"paymentAddress"_s, u"https://shop.example.com"_s}, {u"requestInterval"_s, u"200"_s}}
{
}

void Shop::put(Settings& into, const QString& key, const QString& value)
{
    const auto line =
        std::find_if(into.begin(), into.end(), [&](const auto& entry) { return entry.first == key; });
    if (line == into.end())
        into.push_back({key, value});
    else
        line->second = value;
}

void Shop::configure(const QString& key, const QString& value)
{
    put(settings, key, value);
}

void Shop::unconfigure(const QString& key)
{
    settings.removeIf([&](const auto& entry) { return entry.first == key; });
}

void Shop::configureTransport(const QString& key, const QString& value)
{
    put(transport, key, value);
}

void Shop::configureQueue(const QString& key, const QString& value)
{
    put(queue, key, value);
}

QString Shop::file(const QString& name, const QByteArray& content) const
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(name));
    return file.fileName();
}

QString Shop::receipts(const QStringList& ids) const
{
    QByteArray text;
    for (const QString& id : ids)
        text += receiptLine(id);
    return file(u"receipts.jsonl"_s, text);
}

QStringList Shop::arguments(const QStringList& more) const
{
    QByteArray text;
    for (const auto& [section, entries] :
        {std::pair("[register]\n", settings), {"[transport]\n", transport}, {"[queue]\n", queue}}) {
        text += section;
        for (const auto& [key, value] : entries)
            text += key.toUtf8() + " = " + value.toUtf8() + '\n';
    }
    // At once: a program that has just been started may be reading it.
    QSaveFile config(folder.filePath(u"register.ini"_s));
    if (!config.open(QIODevice::WriteOnly) || !config.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        config.write(text) != text.size() || !config.commit())
        qFatal("cannot write %s", qUtf8Printable(config.fileName()));
    return QStringList{u"--config"_s, config.fileName(), u"--json"_s} + more;
}

Ran Shop::frhost(const QStringList& more, const QByteArray& input) const
{
    return run(frhostProgram(), arguments(more), input);
}

QByteArray receiptLine(const QString& id, double sum)
{
    const QByteArray amount = QByteArray::number(sum, 'f', 2);
    return R"({"id":")" + id.toUtf8() +
           R"(","requisites":[{"tag":1008,"value":"buyer@example.com"},{"tag":1055,"value":1}],)"
           R"("positions":[{"name":"Молоко 3,2 %","price":)" +
           amount + R"(,"quantity":1,"sum":)" + amount + R"(,"taxCode":1}],"payments":[{"type":1,"sum":)" +
           amount + "}]}\n";
}
