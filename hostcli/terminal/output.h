#pragma once

#include <QByteArray>
#include <QString>

#include <unistd.h>

namespace frhost {

/// Standard output. Each write goes out at once; the first that fails is remembered, and nothing is written
/// after it.
class Output
{
public:
    /// The descriptor is borrowed.
    explicit Output(int fileDescriptor = STDOUT_FILENO)
        : descriptor(fileDescriptor)
    {
    }

    /// Returns whether everything has been written.
    bool write(const QByteArray& bytes);
    [[nodiscard]] bool isTerminal() const { return ::isatty(descriptor) != 0; }
    /// Why writing failed; empty as long as it has not.
    [[nodiscard]] QString error() const { return cause; }

private:
    int descriptor;
    QString cause;
};

} // namespace frhost
