#include "hostcli/terminal/qrpictures.h"

#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"
#include "hostcli/terminal/qrcode.h"
#include "till/text.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

using till::Text;

namespace frhost {

QrPictures::QrPictures(const QString& path)
    : folder(path)
{
    if (path.isEmpty())
        return;
    const QByteArray folderName = QFile::encodeName(path);
    if (folder.mkpath(u"."_s))
        descriptor = open(folderName.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    QByteArray name;
    const int probe = create(name);
    if (probe < 0) {
        close(descriptor);
        throw Failure(ExitCode::LocalFailure,
            Text::tr("%1: pictures cannot be written there; name another folder with --qr-dir").arg(path));
    }
    close(probe);
    unlinkat(descriptor, name.constData(), 0);
    // Some file systems allow less than usual.
    if (const long longest = pathconf(folderName.constData(), _PC_NAME_MAX); longest > 0)
        longestName = static_cast<int>(std::min<long>(longest, longestName));
}

QrPictures::~QrPictures()
{
    if (descriptor >= 0)
        close(descriptor);
}

QString QrPictures::write(const QString& id, const QString& qrText) const
{
    if (descriptor < 0 || qrText.isEmpty())
        return {};
    const QString name = qrFileName(id, longestName);
    QBuffer picture;
    QImageWriter writer(&picture, "png");
    QString failure;
    if (!writer.write(QrCode(qrText).picture()))
        failure = writer.errorString();
    else if (!write(picture.data(), QFile::encodeName(name)))
        failure = qt_error_string(errno);
    if (failure.isEmpty())
        return {};
    return Text::tr("%1: the picture of the QR code was not written: %2. The receipt is registered.")
        .arg(folder.filePath(name), failure);
}

int QrPictures::create(QByteArray& name) const
{
    // No picture's name begins so.
    name = "~frhost-" + QUuid::createUuid().toByteArray(QUuid::Id128);
    return openat(descriptor, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

bool QrPictures::write(const QByteArray& picture, const QByteArray& name) const
{
    QByteArray temporary;
    const int file = create(temporary);
    if (file < 0)
        return false;
    Output output(file);
    bool isWritten = output.write(picture);
    isWritten = close(file) == 0 && isWritten;
    if (isWritten && renameat(descriptor, temporary.constData(), descriptor, name.constData()) == 0)
        return true;
    const int cause = errno;
    unlinkat(descriptor, temporary.constData(), 0);
    errno = cause;
    return false;
}

} // namespace frhost
