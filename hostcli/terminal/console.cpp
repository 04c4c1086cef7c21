#include "hostcli/terminal/console.h"

#include "hostcli/terminal/printable.h"
#include "till/text.h"

#include <cstdio>
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

Console& Console::instance()
{
    static Console console;
    return console;
}

Console::Console()
    : isTerminal(isatty(STDERR_FILENO) != 0)
{
}

Console::~Console()
{
    hideStatus();
}

void Console::line(const QString& text)
{
    write(printable(text));
}

void Console::lines(const QString& text)
{
    write(printableLines(text));
}

void Console::write(const QString& printableText)
{
    const std::scoped_lock lock(guard);
    erase();
    put(printableText + u'\n');
    draw();
}

void Console::showStatus(const QString& text)
{
    if (!isTerminal)
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
