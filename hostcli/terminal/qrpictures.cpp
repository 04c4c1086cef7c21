#include "hostcli/terminal/qrpictures.h"

#include "hostcli/failure.h"
#include "hostcli/terminal/qrcode.h"
#include "till/text.h"

#include <QImageWriter>
#include <QTemporaryFile>

using namespace Qt::Literals::StringLiterals;

using till::Text;

namespace frhost {

QrPictures::QrPictures(const QString& path)
    : isWanted(!path.isEmpty())
    , folder(path)
{
    if (!isWanted)
        return;
    QTemporaryFile probe(folder.filePath(u"frhost-XXXXXX"_s));
    if (!folder.mkpath(u"."_s) || !probe.open())
        throw Failure(ExitCode::LocalFailure,
            Text::tr("%1: pictures cannot be written there; name another folder with --qr-dir").arg(path));
}

QString QrPictures::write(const QString& id, const QString& qrText) const
{
    if (!isWanted || qrText.isEmpty())
        return {};
    const QString file = folder.filePath(qrFileName(id));
    QImageWriter writer(file, "png");
    if (writer.write(QrCode(qrText).picture()))
        return {};
    return Text::tr("%1: the picture of the QR code was not written: %2. The receipt is registered.")
        .arg(file, writer.errorString());
}

} // namespace frhost
