#include "till/config/registersetup.h"

#include "host/abstractfrdriver.h"

#include "till/device/loadedregister.h"
#include "till/error.h"
#include "till/nearestname.h"
#include "till/text.h"

#include <QMetaClassInfo>
#include <QStringList>
#include <QVariant>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QVariant parsedBool(const QString& text)
{
    const QString value = text.toLower();
    if (value == u"on"_s || value == u"true"_s || value == u"1"_s)
        return true;
    if (value == u"off"_s || value == u"false"_s || value == u"0"_s)
        return false;
    return {};
}

// The text as a value of the property's type; invalid when it cannot be converted.
QVariant parsed(const QString& text, const QMetaType& type)
{
    bool isNumber = false;
    switch (type.id()) {
    case QMetaType::QString:
        return text;
    case QMetaType::Int: {
        const int value = text.toInt(&isNumber);
        return isNumber ? QVariant(value) : QVariant();
    }
    case QMetaType::UInt: {
        const uint value = text.toUInt(&isNumber);
        return isNumber ? QVariant(value) : QVariant();
    }
    case QMetaType::Bool:
        return parsedBool(text);
    default:
        return {};
    }
}

QString withHint(const QString& message, const QString& hint)
{
    return hint.isEmpty() ? message : message + u". "_s + hint;
}

void write(QObject& device, const QString& name, const QString& text)
{
    const int index = device.metaObject()->indexOfProperty(name.toLatin1().constData());
    const QMetaProperty property = device.metaObject()->property(index);
    const QString hint = classInfo(device, name + u":info"_s);
    const QVariant wanted = parsed(text, property.metaType());
    if (!wanted.isValid())
        throw Error(Problem::Setup, withHint(Text::tr("the value of %1 must be of type %2")
                                                 .arg(name, QString::fromLatin1(property.typeName())),
                                        hint));
    const QVariant before = property.read(&device);
    property.write(&device, wanted);
    const QVariant after = property.read(&device);
    // A device may tidy a value up (a closing slash); one that it refused is still the old one.
    if (after != wanted && after == before)
        throw Error(
            Problem::Setup, withHint(Text::tr("the register refused the value of %1").arg(name), hint));
}

void apply(QObject& device, const Setting& setting, const QStringList& known)
{
    if (isUnused(device, setting.name))
        throw Error(Problem::Setup, Text::tr("the register does not use \"%1\"").arg(setting.name));
    if (!known.contains(setting.name))
        throw Error(Problem::Setup, Text::tr("unknown key; %1").arg(hintFor(setting.name, known)));
    write(device, setting.name, setting.value);
}

} // namespace

QList<QMetaProperty> deviceProperties(const QObject& device)
{
    QList<QMetaProperty> properties;
    const QMetaObject* meta = device.metaObject();
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i)
        properties << meta->property(i);
    return properties;
}

QStringList settableNames(const QObject& device)
{
    QStringList names;
    for (const QMetaProperty& property : deviceProperties(device)) {
        const QString name = QString::fromLatin1(property.name());
        if (property.isReadable() && property.isWritable() && !isUnused(device, name))
            names << name;
    }
    return names;
}

bool isUnused(const QObject& device, const QString& property)
{
    return device.property("unusedProps").toStringList().contains(property);
}

QString classInfo(const QObject& device, const QString& key)
{
    const int index = device.metaObject()->indexOfClassInfo(key.toUtf8().constData());
    return index < 0 ? QString() : QString::fromUtf8(device.metaObject()->classInfo(index).value());
}

void configure(QObject& device, const RegisterConfig& config)
{
    const QStringList known = settableNames(device);
    for (const Setting& setting : config.settings) {
        // A credential is there for every register of the machine.
        const bool isFromCredential = setting.line == 0;
        if (isFromCredential && !known.contains(setting.name))
            continue;
        try {
            apply(device, setting, known);
        } catch (const Error& error) {
            throw Error(error.problem(),
                u"%1:%2: %3"_s.arg(config.file, QString::number(setting.line), error.message()));
        }
    }
    if (!config.driverOptions.isEmpty() &&
        !device.setProperty("driverOptions", QVariant::fromValue(config.driverOptions)))
        throw Error(
            Problem::Setup, Text::tr("%1: the register does not support [driverOptions]").arg(config.file));
}

void setUp(LoadedRegister& fiscalRegister, const RegisterConfig& config)
{
    configure(fiscalRegister.device(), config);
    fiscalRegister.init();
    const auto& options = config.driverOptions;
    for (auto option = options.begin(); option != options.end(); ++option) {
        if (fiscalRegister.driver().checkOption(option.key()) != option.value())
            throw Error(Problem::Setup,
                Text::tr("%1: the driver refused option 0x%2")
                    .arg(config.file, QString::number(static_cast<quint64>(option.key()), 16)));
    }
}

} // namespace till
