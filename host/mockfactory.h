#pragma once

#include <QSharedPointer>

/// Creates objects of T, or shares a substitute that a test or a host program has installed.
///
/// Its members are defined in the library that defines T, where they are instantiated, and not here: a plugin
/// that compiled create() in would allocate a T of the size that it was built with.
template <typename T>
class MockFactory
{
public:
    /// The substitute; null for none. Borrowed: whoever installs it keeps it alive until its last user is
    /// gone.
    static T* mocked;

    /// A new T, owned by the pointer; or the substitute, which the pointer never deletes.
    [[nodiscard]] static QSharedPointer<T> create();
};
