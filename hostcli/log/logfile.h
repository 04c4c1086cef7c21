#pragma once

#include <QByteArray>
#include <QString>

namespace frhost {

/// A file that log lines are appended to, by several processes at once if need be. Only its owner can read a
/// file that it creates.
class LogFile
{
public:
    /// Throws Failure when the file cannot be opened for writing.
    explicit LogFile(const QString& path);
    ~LogFile();
    Q_DISABLE_COPY_MOVE(LogFile)

    /// Appends a line. Returns why that has failed, the first time that it fails; empty otherwise.
    [[nodiscard]] QString append(const QString& line);

private:
    QString path;
    int descriptor = -1;
    bool hasFailed = false;
};

} // namespace frhost
