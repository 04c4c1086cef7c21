#pragma once

#include <QObject>
#include <QVariant>

namespace bench {

/// A device object that does nothing.
class EmptyObject : public QObject
{
    Q_OBJECT
public Q_SLOTS:
    void init() {}
};

/// The root of a plugin that has what a host looks for and nothing else.
class EmptyFactory : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "EmptyFactory")
public Q_SLOTS:
    QVariant getObject() const { return QVariant::fromValue<QObject*>(new EmptyObject); }
};

} // namespace bench
