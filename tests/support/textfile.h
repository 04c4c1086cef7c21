#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

/// A folder of files that is deleted with the object.
class TextFiles
{
public:
    /// Writes a file and returns its path.
    [[nodiscard]] QString file(const char* name, const QByteArray& content) const
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", name);
        return file.fileName();
    }
    [[nodiscard]] QString path() const { return folder.path(); }

private:
    QTemporaryDir folder;
};

/// The message of the Failure that the action throws; empty when it throws none.
template <typename Exception, typename Action>
QString messageOf(Action action)
{
    try {
        action();
    } catch (const Exception& exception) {
        return exception.message();
    }
    return {};
}
