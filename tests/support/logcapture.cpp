#include "tests/support/logcapture.h"

#include <QMutex>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

QMutex guard;
QStringList texts;
QStringList names;
QtMessageHandler previous = nullptr;

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return u"debug"_s;
    case QtInfoMsg:
        return u"info"_s;
    case QtWarningMsg:
        return u"warn"_s;
    default:
        return u"error"_s;
    }
}

void collect(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QMutexLocker lock(&guard);
    texts << levelName(type) + u": "_s + text;
    names << QString::fromUtf8(context.category);
}

} // namespace

LogCapture::LogCapture()
{
    previous = qInstallMessageHandler(collect);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous);
    const QMutexLocker lock(&guard);
    texts.clear();
    names.clear();
}

QStringList LogCapture::lines() const
{
    const QMutexLocker lock(&guard);
    return texts;
}

QStringList LogCapture::take()
{
    const QMutexLocker lock(&guard);
    names.clear();
    return std::exchange(texts, {});
}

QStringList LogCapture::categories() const
{
    const QMutexLocker lock(&guard);
    return names;
}
