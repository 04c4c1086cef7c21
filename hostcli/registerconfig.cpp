#include "hostcli/registerconfig.h"

#include "host/secrets.h"
#include "hostcli/failure.h"
#include "hostcli/inifile.h"
#include "hostcli/nearestname.h"
#include "hostcli/text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>

namespace frhost {

namespace {

const QString registerSection = QStringLiteral("register");
const QString optionSection = QStringLiteral("driverOptions");
const QString transportSection = QStringLiteral("transport");
constexpr int longestTimeout = 3600000;
const QString passwordKey = QStringLiteral("password");
const QString passwordFileKey = QStringLiteral("passwordFile");

[[noreturn]] void fail(const QString& file, int line, const QString& what)
{
    throw Failure(ExitCode::Usage, QStringLiteral("%1:%2: %3").arg(file, QString::number(line), what));
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(ExitCode::Usage, Text::tr("%1: %2").arg(path, file.errorString()));
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw Failure(ExitCode::Usage, Text::tr("%1: %2").arg(path, file.errorString()));
    return content;
}

// Everything up to the first line break, blanks included: they may belong to the password.
QString readPassword(const QString& path)
{
    QByteArray content = readAll(path);
    if (const qsizetype end = content.indexOf('\n'); end >= 0)
        content.truncate(end);
    if (content.endsWith('\r'))
        content.chop(1);
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString password = decoder(content);
    if (decoder.hasError() || password.isEmpty())
        throw Failure(ExitCode::Usage, Text::tr("%1: no password in UTF-8 on the first line").arg(path));
    return password;
}

void addOption(RegisterConfig& config, const IniEntry& entry)
{
    bool isNumber = false;
    const quint64 bits = entry.key.toULongLong(&isNumber, 0);
    if (!isNumber || bits == 0)
        fail(config.file, entry.line, Text::tr("\"%1\" is no option; write it as 0x10 = off").arg(entry.key));
    const QString value = entry.value.toLower();
    if (value != QStringLiteral("on") && value != QStringLiteral("off"))
        fail(config.file, entry.line, Text::tr("option %1 takes \"on\" or \"off\"").arg(entry.key));
    config.driverOptions.insert(static_cast<hw::fr::Option>(bits), value == QStringLiteral("on"));
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
    QStringList known;
    for (const auto& [key, member] : transportTimes) {
        known << QString::fromLatin1(key);
        if (entry.key != known.last())
            continue;
        bool isNumber = false;
        const int milliseconds = entry.value.toInt(&isNumber);
        if (!isNumber || milliseconds < 1 || milliseconds > longestTimeout)
            fail(config.file, entry.line,
                Text::tr("%1 takes 1 to %2 milliseconds").arg(entry.key, QString::number(longestTimeout)));
        config.transport.*member = std::chrono::milliseconds(milliseconds);
        return;
    }
    for (const auto& [key, member] : transportTexts) {
        known << QString::fromLatin1(key);
        if (entry.key != known.last())
            continue;
        config.transport.*member = entry.value;
        return;
    }
    fail(config.file, entry.line,
        Text::tr("unknown key \"%1\"; did you mean \"%2\"?").arg(entry.key, nearestName(entry.key, known)));
}

} // namespace

bool RegisterConfig::has(const QString& name) const
{
    return std::any_of(
        settings.begin(), settings.end(), [&](const Setting& setting) { return setting.name == name; });
}

RegisterConfig readRegisterConfig(const QString& file)
{
    RegisterConfig config;
    config.file = file;
    for (const IniEntry& entry : parseIni(readAll(file), file)) {
        if (entry.section == optionSection) {
            addOption(config, entry);
            continue;
        }
        if (entry.section == transportSection) {
            addTransport(config, entry);
            continue;
        }
        if (entry.section != registerSection)
            fail(file, entry.line,
                Text::tr("unknown section [%1]; did you mean [%2]?")
                    .arg(entry.section,
                        nearestName(entry.section, {registerSection, optionSection, transportSection})));
        const bool fromFile = entry.key == passwordFileKey;
        const QString name = fromFile ? passwordKey : entry.key;
        if (config.has(name))
            fail(file, entry.line, Text::tr("give password or passwordFile, not both"));
        const QString value = fromFile
                                  ? readPassword(QFileInfo(file).absoluteDir().absoluteFilePath(entry.value))
                                  : entry.value;
        if (name == passwordKey)
            secrets::addCredential(value);
        config.settings << Setting{name, value, entry.line};
    }
    return config;
}

void requireConnection(const RegisterConfig& config)
{
    if (config.file.isEmpty())
        throw Failure(ExitCode::Usage,
            Text::tr("This command talks to the service: give a configuration with --config FILE."));
    for (const char* name : {"url", "login", "password", "groupCode"}) {
        if (!config.has(QString::fromLatin1(name)))
            throw Failure(ExitCode::Usage,
                Text::tr("%1: section [register] lacks \"%2\"").arg(config.file, QString::fromLatin1(name)));
    }
}

} // namespace frhost
