#include "host/log/exchangesecrets.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/printable.h"
#include "hostcli/terminal/texttable.h"
#include "till/config/registersetup.h"
#include "till/device/loadedregister.h"
#include "till/text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaClassInfo>

using namespace Qt::Literals::StringLiterals;
using namespace till;
using hostruntime::secrets::withoutPassword;

namespace frhost {

namespace {

struct PropertyInfo
{
    QString name;
    QString type;
    QVariant initial;
    QVariant current;
    QMap<QString, QString> labels;
    bool isWritable = false;
    bool isUsed = true;
};

bool isSecret(const QString& property)
{
    return property.contains(u"password"_s, Qt::CaseInsensitive);
}

QString shown(const PropertyInfo& property, const QVariant& value)
{
    if (!isSecret(property.name) || value.toString().isEmpty())
        return withoutPassword(value.toString());
    return Text::tr("(set)");
}

// What the class infos say about one property ("url:name", "url:info") or, with an empty name, about the
// device.
QMap<QString, QString> classInfos(const QObject& device, const QString& property)
{
    QMap<QString, QString> infos;
    const QMetaObject* meta = device.metaObject();
    for (int i = 0; i < meta->classInfoCount(); ++i) {
        const QString key = QString::fromUtf8(meta->classInfo(i).name());
        const qsizetype colon = key.indexOf(u':');
        if ((colon < 0 ? QString() : key.first(colon)) == property)
            infos.insert(key.sliced(colon + 1), QString::fromUtf8(meta->classInfo(i).value()));
    }
    return infos;
}

QList<PropertyInfo> propertiesOf(const QObject& initial, const QObject& current)
{
    QList<PropertyInfo> properties;
    for (const QMetaProperty& property : deviceProperties(current)) {
        const QString name = QString::fromLatin1(property.name());
        properties << PropertyInfo{name, QString::fromLatin1(property.typeName()), property.read(&initial),
            property.read(&current), classInfos(current, name), property.isWritable(),
            !isUnused(current, name)};
    }
    return properties;
}

QJsonObject toJson(const QMap<QString, QString>& texts)
{
    QJsonObject json;
    for (auto text = texts.begin(); text != texts.end(); ++text)
        json.insert(text.key(), text.value());
    return json;
}

QJsonValue jsonOf(const QVariant& value)
{
    const bool isText = value.typeId() == QMetaType::QString;
    return isText ? QJsonValue(withoutPassword(value.toString())) : QJsonValue::fromVariant(value);
}

QJsonObject toJson(const PropertyInfo& property)
{
    QJsonObject json{{u"name"_s, property.name}, {u"type"_s, property.type},
        {u"writable"_s, property.isWritable}, {u"used"_s, property.isUsed},
        {u"labels"_s, toJson(property.labels)}};
    if (isSecret(property.name)) {
        json.insert(u"set"_s, !property.current.toString().isEmpty());
        return json;
    }
    if (property.initial.isValid())
        json.insert(u"default"_s, jsonOf(property.initial));
    if (property.current.isValid())
        json.insert(u"value"_s, jsonOf(property.current));
    return json;
}

QByteArray jsonOf(const PluginFile& plugin, const QObject& device, const QList<PropertyInfo>& properties)
{
    QJsonArray list;
    for (const PropertyInfo& property : properties)
        list.append(toJson(property));
    const QJsonObject json{{u"plugin"_s, plugin.path}, {u"metaData"_s, plugin.metaData},
        {u"device"_s, toJson(classInfos(device, {}))}, {u"properties"_s, list}};
    return printableJson(QJsonDocument(json).toJson(QJsonDocument::Compact)) + '\n';
}

QString remark(const PropertyInfo& property)
{
    if (!property.isUsed)
        return Text::tr("not used");
    return property.isWritable ? QString() : Text::tr("read only");
}

QByteArray textOf(const PluginFile& plugin, const QObject& device, const QList<PropertyInfo>& properties)
{
    QList<QStringList> head{{Text::tr("Plugin"), plugin.path}, {Text::tr("Name"), plugin.name()},
        {Text::tr("Interface"), plugin.metaData.value(u"IID"_s).toString()},
        {Text::tr("Device"), classInfo(device, u"displayName"_s)}, {QString(), classInfo(device, u"info"_s)}};
    QList<QStringList> rows{{Text::tr("Setting"), Text::tr("Meaning"), Text::tr("Type"), Text::tr("Default"),
        Text::tr("Value"), QString()}};
    for (const PropertyInfo& property : properties)
        rows << QStringList{property.name, property.labels.value(u"name"_s), property.type,
            shown(property, property.initial), shown(property, property.current), remark(property)};
    return (textTable(head) + u'\n' + textTable(rows)).toUtf8();
}

} // namespace

ExitCode describe(const CommandLine& line, Output& output)
{
    const RegisterConfig config = configOf(line);
    const PluginFile plugin = pluginOf(line);
    LoadedRegister untouched(plugin);
    LoadedRegister fiscalRegister(plugin);
    configure(fiscalRegister.device(), config);
    const QList<PropertyInfo> properties = propertiesOf(untouched.device(), fiscalRegister.device());
    output.write(line.json ? jsonOf(plugin, fiscalRegister.device(), properties)
                           : textOf(plugin, fiscalRegister.device(), properties));
    return ExitCode::Success;
}

} // namespace frhost
