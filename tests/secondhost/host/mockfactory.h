#pragma once

#include <QSharedPointer>

template <typename T>
struct MockFactory
{
    static QSharedPointer<T> create() { return QSharedPointer<T>(new T); }
};
