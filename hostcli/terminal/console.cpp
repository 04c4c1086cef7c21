#include "hostcli/terminal/console.h"

#include "hostcli/terminal/printable.h"
#include "till/text.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

using till::Text;

namespace frhost {

namespace {

// A line that wraps cannot be erased.
constexpr qsizetype maxStatusLength = 60;

void put(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<std::size_t>(utf8.size()), stderr);
    std::fflush(stderr);
}

} // namespace

bool leadsToJournal(int descriptor, const QByteArray& journalStream)
{
    struct stat status = {};
    if (journalStream.isEmpty() || fstat(descriptor, &status) != 0)
        return false;
    return journalStream == QByteArray::number(static_cast<quint64>(status.st_dev)) + ':' +
                                QByteArray::number(static_cast<quint64>(status.st_ino));
}

QString withPriority(const QString& text, Urgency urgency)
{
    const QString mark = u"<%1>"_s.arg(static_cast<int>(urgency));
    return mark + QString(text).replace(u'\n', u'\n' + mark);
}

Console& Console::instance()
{
    static Console console;
    return console;
}

Console::Console()
    : isTerminal(isatty(STDERR_FILENO) != 0)
    , toJournal(leadsToJournal(STDERR_FILENO, qgetenv("JOURNAL_STREAM")))
{
}

Console::~Console()
{
    hideStatus();
}

void Console::line(const QString& text, Urgency urgency)
{
    write(printable(text), urgency);
}

void Console::lines(const QString& text, Urgency urgency)
{
    write(printableLines(text), urgency);
}

void Console::write(const QString& printableText, Urgency urgency)
{
    if (copy)
        copy(printableText, urgency);
    if (isQuiet && urgency == Urgency::Notice)
        return;
    const std::scoped_lock lock(guard);
    erase();
    put((toJournal ? withPriority(printableText, urgency) : printableText) + u'\n');
    draw();
}

void Console::showStatus(const QString& text)
{
    if (!isTerminal || isQuiet)
        return;
    const std::scoped_lock lock(guard);
    status = printable(text).left(maxStatusLength);
    since = std::chrono::steady_clock::now();
    draw();
    if (!ticker.joinable())
        ticker = std::jthread([this](const std::stop_token& stop) { tick(stop); });
}

void Console::hideStatus()
{
    ticker = {};
    dropStatus();
}

void Console::dropStatus()
{
    const std::scoped_lock lock(guard);
    erase();
    status.clear();
}

void Console::tick(const std::stop_token& stop)
{
    std::unique_lock lock(guard);
    while (!stop.stop_requested()) {
        changed.wait_for(lock, stop, std::chrono::seconds(1), [] { return false; });
        if (!stop.stop_requested())
            draw();
    }
}

void Console::draw() const
{
    if (status.isEmpty())
        return;
    const auto waited = std::chrono::steady_clock::now() - since;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
    put(u"\r\033[K"_s + Text::tr("%1: %2 s").arg(status, QString::number(seconds)));
}

void Console::erase() const
{
    if (!status.isEmpty())
        put(u"\r\033[K"_s);
}

} // namespace frhost
