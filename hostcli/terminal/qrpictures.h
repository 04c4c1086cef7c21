#pragma once

#include <QDir>
#include <QString>

namespace frhost {

/// The folder for the QR codes of receipts, one picture `<id>.png` each.
class QrPictures
{
public:
    /// Creates the folder; an empty path means no folder. Throws Failure when nothing can be written there,
    /// so that it is known before a receipt is sent.
    explicit QrPictures(const QString& path);

    /// Writes the picture, replacing an older one; does nothing where there is no folder or no text. Returns
    /// why it could not be written, empty when it was.
    [[nodiscard]] QString write(const QString& id, const QString& qrText) const;

private:
    bool isWanted;
    QDir folder;
};

} // namespace frhost
