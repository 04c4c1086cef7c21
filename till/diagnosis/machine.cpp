#include "till/diagnosis/machine.h"

#include "host/log/exchangesecrets.h"
#include "till/text.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QSysInfo>
#include <QTimeZone>
#include <QUrl>

#include <algorithm>
#include <clocale>
#include <langinfo.h>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

using hostruntime::secrets::withoutPassword;

constexpr qint64 mebibyte = 1024 * 1024;
// A journal grows by about a kilobyte a receipt; SQLite needs room for a copy of what it changes.
constexpr qint64 littleSpace = 100 * mebibyte;

QString settingOf(const RegisterConfig& config, const QString& name)
{
    const auto found = std::find_if(config.settings.begin(), config.settings.end(),
        [&](const Setting& setting) { return setting.name == name; });
    return found == config.settings.end() ? QString() : found->value;
}

// The host that this machine itself has to resolve.
QString hostToResolve(const RegisterConfig& config)
{
    const QString& proxy = config.transport.proxy;
    return QUrl(proxy.isEmpty() ? settingOf(config, u"url"_s) : proxy).host();
}

Finding timeZoneFinding()
{
    const QDateTime now = QDateTime::currentDateTime();
    return {Grade::Note, Text::tr("Time zone"),
        u"%1, %2"_s.arg(QString::fromUtf8(QTimeZone::systemTimeZoneId()),
            now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate))};
}

// The name that the environment gives it, by the rules of the C library.
QString wantedLocale()
{
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const QString value = qEnvironmentVariable(name); !value.isEmpty())
            return value;
    }
    return u"C"_s;
}

} // namespace

Finding judgeLocale(const QString& wanted, const QString& encoding)
{
    const QString subject = Text::tr("Locale");
    const QString name = wanted + u", "_s + encoding;
    if (encoding == "UTF-8"_L1)
        return {Grade::Note, subject, name};
    const QString asked = wanted.toLower().remove(u'-');
    if (asked.contains("utf8"_L1))
        return {Grade::Warning, subject,
            Text::tr("%1 is not installed on this machine: names of files and Russian texts may be garbled. "
                     "Install it, or set LC_ALL=C.UTF-8.")
                .arg(wanted)};
    return {Grade::Warning, subject,
        Text::tr(
            "%1 is not UTF-8: names of files and Russian texts may be garbled. Set LC_ALL=C.UTF-8 or another "
            "locale of UTF-8.")
            .arg(name)};
}

Finding spaceFor(const QString& file)
{
    QString folder = QFileInfo(file).absolutePath();
    while (!QFileInfo::exists(folder) && folder != QDir::rootPath())
        folder = QFileInfo(folder).absolutePath();
    const QFileInfo changed(QFileInfo::exists(file) ? file : folder);
    const QStorageInfo storage(folder);
    return judgeSpace(file, changed.isWritable() && !storage.isReadOnly(), storage.bytesAvailable());
}

Finding judgeSpace(const QString& file, bool isWritable, qint64 left)
{
    const QString subject = Text::tr("Space");
    if (!isWritable)
        return {Grade::Warning, subject,
            Text::tr("%1 cannot be written by this user. Change the permissions, or name another file.")
                .arg(file)};
    const QString mebibytes = QString::number(left / mebibyte);
    if (left < littleSpace)
        return {
            Grade::Warning, subject, Text::tr("%1: only %2 MiB are left. Make room.").arg(file, mebibytes)};
    return {Grade::Good, subject, Text::tr("%1: %2 MiB left").arg(file, mebibytes)};
}

Finding resolved(const QString& host)
{
    const QString subject = Text::tr("Names");
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(host.toUtf8().constData(), nullptr, &hints, &found);
    if (error != 0)
        return {Grade::Warning, subject,
            Text::tr(
                "%1 is not known to this machine's name servers: %2. Check the name and /etc/resolv.conf.")
                .arg(host, QString::fromLocal8Bit(gai_strerror(error)))};
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(found, &freeaddrinfo);
    QStringList addresses;
    for (const addrinfo* entry = found; entry; entry = entry->ai_next) {
        char text[NI_MAXHOST] = {};
        if (getnameinfo(entry->ai_addr, entry->ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST) ==
            0)
            addresses << QString::fromLatin1(text);
    }
    return {Grade::Good, subject, u"%1: %2"_s.arg(host, addresses.join(u", "_s))};
}

Finding proxyFinding(const QString& proxy, const QStringList& environment)
{
    const QString subject = Text::tr("Proxy");
    if (!proxy.isEmpty())
        return {Grade::Note, subject, withoutPassword(proxy)};
    if (environment.isEmpty())
        return {Grade::Note, subject, Text::tr("none")};
    return {Grade::Note, subject,
        Text::tr("none; the environment's %1 are not used, only proxy in [transport] is")
            .arg(environment.join(u", "_s))};
}

QList<Finding> lookAtMachine(const RegisterConfig& config, const QStringList& writtenFiles)
{
    QStringList variables;
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"}) {
        if (qEnvironmentVariableIsSet(name))
            variables << QString::fromLatin1(name);
    }
    QList<Finding> findings{
        {Grade::Note, Text::tr("System"),
            u"%1, Linux %2, %3, Qt %4"_s.arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                QSysInfo::currentCpuArchitecture(), QString::fromLatin1(qVersion()))},
        timeZoneFinding(), judgeLocale(wantedLocale(), QString::fromLatin1(nl_langinfo(CODESET))),
        proxyFinding(config.transport.proxy, variables)};
    for (const QString& warning : config.warnings)
        findings << Finding{Grade::Warning, Text::tr("Permissions"), warning};
    if (const QString host = hostToResolve(config); !host.isEmpty())
        findings << resolved(host);
    for (const QString& file : writtenFiles)
        findings << spaceFor(file);
    return findings;
}

} // namespace till
