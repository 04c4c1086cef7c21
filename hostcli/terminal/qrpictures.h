#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>

namespace frhost {

/// The folder for the QR codes of receipts, one picture each, named by qrFileName().
class QrPictures
{
public:
    /// Creates the folder; an empty path means no folder. Throws Failure when nothing can be written there,
    /// so that it is known before a receipt is sent.
    explicit QrPictures(const QString& path);
    ~QrPictures();
    Q_DISABLE_COPY_MOVE(QrPictures)

    /// Writes the picture, replacing an older one or a link, at once and as a whole; does nothing where there
    /// is no folder or no text. Returns why it could not be written, empty when it was.
    [[nodiscard]] QString write(const QString& id, const QString& qrText) const;

private:
    // Creates a file under a new name; returns its descriptor, -1 when it cannot.
    [[nodiscard]] int create(QByteArray& name) const;
    [[nodiscard]] bool write(const QByteArray& picture, const QByteArray& name) const;

    QDir folder;
    // Of the folder, -1 where none is wanted.
    int descriptor = -1;
    int longestName = 255;
};

} // namespace frhost
