#include "till/config/registerconfig.h"

#include "host/log/exchangesecrets.h"
#include "host/log/secrets.h"
#include "till/config/exposure.h"
#include "till/config/inifile.h"
#include "till/config/queuesection.h"
#include "till/error.h"
#include "till/nearestname.h"
#include "till/text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QUrl>

#include <algorithm>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

using hostruntime::TransportOptions;

const QString registerSection = u"register"_s;
const QString optionSection = u"driverOptions"_s;
const QString transportSection = u"transport"_s;
const QString queueSection = u"queue"_s;
constexpr int longestTimeout = 3600000;
const QString passwordKey = u"password"_s;
const QString passwordFileKey = u"passwordFile"_s;
const QString caFileKey = u"caFile"_s;
const QString credential = u"frhost.password"_s;
constexpr qint64 largestFile = 1024 * 1024;

[[noreturn]] void fail(const QString& file, int line, const QString& what)
{
    throw Error(Problem::Setup, u"%1:%2: %3"_s.arg(file, QString::number(line), what));
}

struct Content
{
    QByteArray bytes;
    struct stat status = {};
};

// Messages call the file by `name`.
Content readAll(const QString& path, const QString& name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(Problem::Setup, Text::tr("%1: %2").arg(name, file.errorString()));
    struct stat status = {};
    fstat(file.handle(), &status);
    const QByteArray bytes = file.read(largestFile + 1);
    if (file.error() != QFileDevice::NoError)
        throw Error(Problem::Setup, Text::tr("%1: %2").arg(name, file.errorString()));
    if (bytes.size() > largestFile)
        throw Error(Problem::Setup, Text::tr("%1: larger than 1 MiB").arg(name));
    return {bytes, status};
}

// Everything up to the first line break, spaces included: they may belong to the password.
QString firstLine(QByteArray content, const QString& name)
{
    if (const qsizetype end = content.indexOf('\n'); end >= 0)
        content.truncate(end);
    if (content.endsWith('\r'))
        content.chop(1);
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString password = decoder(content);
    if (decoder.hasError() || password.isEmpty())
        throw Error(Problem::Setup, Text::tr("%1: no password in UTF-8 on the first line").arg(name));
    return password;
}

QString besideConfig(const RegisterConfig& config, const QString& path)
{
    return QFileInfo(config.file).absoluteDir().absoluteFilePath(path);
}

void warn(RegisterConfig& config, const QString& warning)
{
    if (!warning.isEmpty())
        config.warnings << warning;
}

// Messages do not show the name: it may be the password itself.
QString readPasswordFile(RegisterConfig& config, const IniEntry& entry)
{
    const QString name = u"%1:%2: %3"_s.arg(config.file, QString::number(entry.line), passwordFileKey);
    const QString path = besideConfig(config, entry.value);
    const Content content = readAll(path, name);
    warn(config, exposure(path, content.status, geteuid()));
    return firstLine(content.bytes, name);
}

void addPassword(RegisterConfig& config, const QString& password, int line)
{
    hostruntime::secrets::addCredential(password);
    config.settings << Setting{passwordKey, password, line};
}

// The service manager looks after the credential's mode.
void takeCredential(RegisterConfig& config)
{
    const QString folder = qEnvironmentVariable("CREDENTIALS_DIRECTORY");
    const QString path = QDir(folder).filePath(credential);
    if (folder.isEmpty() || !QFileInfo::exists(path))
        return;
    if (config.has(passwordKey))
        config.warnings << Text::tr("%1: the password is taken from here, not from the credential %2")
                               .arg(config.file, credential);
    else
        addPassword(config, firstLine(readAll(path, path).bytes, path), 0);
}

bool isAddress(const IniEntry& entry)
{
    return entry.key == u"proxy"_s || entry.key == u"url"_s;
}

// Whether the configuration itself holds a password: the register's, or one in an address.
bool holdsPassword(const QList<IniEntry>& entries)
{
    return std::any_of(entries.begin(), entries.end(), [](const IniEntry& entry) {
        return entry.key == passwordKey || (isAddress(entry) && entry.value.contains(u'@'));
    });
}

void keepAddressesOutOfLogs(const QList<IniEntry>& entries)
{
    for (const IniEntry& entry : entries) {
        if (!isAddress(entry))
            continue;
        for (const QString& password : hostruntime::secrets::passwordsIn(entry.value))
            hostruntime::secrets::addCredential(password);
        hostruntime::secrets::addCredential(QUrl(entry.value).password());
    }
}

void warnOfOthers(RegisterConfig& config, const struct stat& status, const QList<IniEntry>& entries)
{
    if (!S_ISREG(status.st_mode))
        return;
    const uid_t reader = geteuid();
    if (holdsPassword(entries))
        warn(config, exposure(config.file, status, reader));
    warn(config, changeability(config.file, status, reader));
    warn(config, ownership(config.file, status, reader));
    config.warnings << replaceability(config.file, reader);
}

void addOption(RegisterConfig& config, const IniEntry& entry)
{
    bool isNumber = false;
    const quint64 bits = entry.key.toULongLong(&isNumber, 0);
    if (!isNumber || bits == 0)
        fail(config.file, entry.line, Text::tr("not an option; write, for example, 0x10 = off"));
    const QString value = entry.value.toLower();
    if (value != u"on"_s && value != u"off"_s)
        fail(config.file, entry.line, Text::tr("an option must be \"on\" or \"off\""));
    config.driverOptions.insert(static_cast<hw::fr::Option>(bits), value == u"on"_s);
}

struct TransportTime
{
    const char* key;
    std::chrono::milliseconds TransportOptions::*member;
};

constexpr TransportTime transportTimes[] = {
    {"connectTimeout", &TransportOptions::connect},
    {"firstByteTimeout", &TransportOptions::firstByte},
    {"stallTimeout", &TransportOptions::stall},
    {"overallTimeout", &TransportOptions::overall},
};

struct TransportText
{
    const char* key;
    QString TransportOptions::*member;
};

constexpr TransportText transportTexts[] = {
    {"caFile", &TransportOptions::caFile},
    {"proxy", &TransportOptions::proxy},
    {"userAgent", &TransportOptions::userAgent},
};

void addTransport(RegisterConfig& config, const IniEntry& entry)
{
    for (const auto& [key, member] : transportTimes) {
        if (entry.key != QLatin1StringView(key))
            continue;
        bool isNumber = false;
        const int milliseconds = entry.value.toInt(&isNumber);
        if (!isNumber || milliseconds < 1 || milliseconds > longestTimeout)
            fail(config.file, entry.line,
                Text::tr("%1 must be 1 to %2 milliseconds").arg(entry.key, QString::number(longestTimeout)));
        config.transport.*member = std::chrono::milliseconds(milliseconds);
        return;
    }
    for (const auto& [key, member] : transportTexts) {
        if (entry.key != QLatin1StringView(key))
            continue;
        const bool isPath = entry.key == caFileKey && !entry.value.isEmpty();
        config.transport.*member = isPath ? besideConfig(config, entry.value) : entry.value;
        return;
    }
    fail(config.file, entry.line, Text::tr("unknown key; %1").arg(hintFor(entry.key, transportKeys())));
}

} // namespace

QStringList transportKeys()
{
    QStringList keys;
    for (const TransportTime& time : transportTimes)
        keys << QString::fromLatin1(time.key);
    for (const TransportText& text : transportTexts)
        keys << QString::fromLatin1(text.key);
    return keys;
}

bool RegisterConfig::has(const QString& name) const
{
    return std::any_of(
        settings.begin(), settings.end(), [&](const Setting& setting) { return setting.name == name; });
}

RegisterConfig readRegisterConfig(const QString& file)
{
    RegisterConfig config;
    config.file = file;
    const Content content = readAll(file, file);
    const QList<IniEntry> entries = parseIni(content.bytes, file);
    keepAddressesOutOfLogs(entries);
    warnOfOthers(config, content.status, entries);
    for (const IniEntry& entry : entries) {
        if (entry.section == optionSection) {
            addOption(config, entry);
            continue;
        }
        if (entry.section == transportSection) {
            addTransport(config, entry);
            continue;
        }
        if (entry.section == queueSection) {
            readQueueEntry(config, entry);
            continue;
        }
        if (entry.section != registerSection)
            fail(file, entry.line,
                Text::tr("unknown section; %1")
                    .arg(hintFor(u'[' + entry.section + u']',
                        {u"[register]"_s, u"[driverOptions]"_s, u"[transport]"_s, u"[queue]"_s})));
        const bool fromFile = entry.key == passwordFileKey;
        const QString name = fromFile ? passwordKey : entry.key;
        if (config.has(name))
            fail(file, entry.line, Text::tr("set password or passwordFile, not both"));
        if (name == passwordKey)
            addPassword(config, fromFile ? readPasswordFile(config, entry) : entry.value, entry.line);
        else
            config.settings << Setting{name, entry.value, entry.line};
    }
    takeCredential(config);
    return config;
}

void requireConnection(const RegisterConfig& config, const QStringList& known)
{
    for (const QString& name : {u"url"_s, u"login"_s, passwordKey, u"groupCode"_s}) {
        if (known.contains(name) && !config.has(name))
            throw Error(
                Problem::Setup, Text::tr("%1: section [register] lacks \"%2\"").arg(config.file, name));
    }
}

} // namespace till
