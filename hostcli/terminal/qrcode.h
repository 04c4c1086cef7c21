#pragma once

#include <QImage>
#include <QString>

namespace frhost {

/// A text as a QR code of error correction level M, with the quiet zone of four modules around it.
class QrCode
{
public:
    /// Null when the text is empty or too long for any QR code.
    explicit QrCode(const QString& text);

    [[nodiscard]] bool isNull() const { return modules.isNull(); }
    /// The code for a terminal: two rows of modules a line, dark on light whatever the terminal's colours
    /// are.
    [[nodiscard]] QString halfBlocks() const;
    /// The code as a picture, each module `pixels` wide.
    [[nodiscard]] QImage picture(int pixels = 8) const;

private:
    // One pixel a module: 1 is dark.
    QImage modules;
};

/// The name of the picture file of the receipt `id`, another one for every id: letters and digits of
/// Unicode's first plane, spaces and "._-" as they are, anything else percent-encoded, so that no id leads
/// out of the folder. A name of more than `longest` bytes ends early, with "~" and a digest of the id.
[[nodiscard]] QString qrFileName(const QString& id, int longest = 255);

} // namespace frhost
