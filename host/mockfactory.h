#pragma once

#include <QSharedPointer>

/// Creates objects of T, or shares a substitute that a test or a host program has installed.
template <typename T>
class MockFactory
{
public:
    /// The substitute; null for none. Borrowed: whoever installs it keeps it alive until its last user is
    /// gone.
    static T* mocked;

    /// A new T, owned by the pointer; or the substitute, which the pointer never deletes.
    [[nodiscard]] static QSharedPointer<T> create()
    {
        if (mocked)
            return QSharedPointer<T>(mocked, [](T*) {});
        return QSharedPointer<T>(new T);
    }
};

template <typename T>
T* MockFactory<T>::mocked = nullptr;
