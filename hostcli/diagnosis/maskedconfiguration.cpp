#include "hostcli/diagnosis/maskedconfiguration.h"

#include "host/log/exchangesecrets.h"
#include "host/log/secrets.h"
#include "till/config/inifile.h"
#include "till/error.h"

#include <QFile>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

namespace secrets = hostruntime::secrets;

const QStringList harmless{u"url"_s, u"groupCode"_s, u"inn"_s, u"email"_s, u"paymentAddress"_s,
    u"requestInterval"_s, u"deviceId"_s, u"speedEnumerate"_s, u"connectTimeout"_s, u"firstByteTimeout"_s,
    u"stallTimeout"_s, u"overallTimeout"_s, u"caFile"_s, u"proxy"_s, u"userAgent"_s, u"store"_s,
    u"parallel"_s, u"lease"_s};

const QStringList secretKeys{u"login"_s, u"password"_s, u"passwordFile"_s};

bool isHarmless(const IniEntry& entry)
{
    return harmless.contains(entry.key) ||
           (entry.section == "driverOptions"_L1 && entry.key.startsWith("0x"_L1));
}

} // namespace

QByteArray maskedConfiguration(const QString& file)
{
    QFile source(file);
    if (file.isEmpty() || !source.open(QIODevice::ReadOnly))
        return file.toUtf8() + ": " + source.errorString().toUtf8() + '\n';
    QString text;
    QString section;
    try {
        for (const IniEntry& entry : parseIni(source.readAll(), file)) {
            if (entry.section != section)
                text += u"[%1]\n"_s.arg(section = entry.section);
            const QString value =
                isHarmless(entry) ? secrets::withoutPassword(entry.value) : secrets::mask.toString();
            // An unknown key may be a password that lost its own.
            const QString key =
                isHarmless(entry) || secretKeys.contains(entry.key) ? entry.key : secrets::mask.toString();
            text += key + u" = "_s + value + u'\n';
        }
    } catch (const Error& error) {
        text += error.message() + u'\n';
    }
    return secrets::masked(text, secrets::Audience::Anyone).toUtf8();
}

} // namespace frhost
