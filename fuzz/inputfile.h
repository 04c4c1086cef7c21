#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Input as a file, for code that reads files. Each input overwrites the one before; the folder is deleted
/// with the object.
class InputFile
{
public:
    /// Writes the input; returns the file's path.
    [[nodiscard]] QString written(const std::uint8_t* data, std::size_t size) const
    {
        QFile file(folder.filePath(QStringLiteral("input")));
        if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char*>(data),
                                                    static_cast<qint64>(size)) != static_cast<qint64>(size))
            std::abort();
        return file.fileName();
    }
    [[nodiscard]] QString path() const { return folder.path(); }

private:
    QTemporaryDir folder;
};
