#pragma once

#include <QString>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace frhost {

/// Standard error: messages, log lines and, on a terminal, a status line with the seconds that pass. Safe to
/// use from several threads.
class Console
{
public:
    /// The one console of the process; log lines come from anywhere.
    [[nodiscard]] static Console& instance();
    ~Console();
    Q_DISABLE_COPY_MOVE(Console)

    /// Writes a line above the status line, if there is one. Hidden characters are replaced, line breaks too:
    /// no text from elsewhere can begin a line of its own.
    void line(const QString& text);
    /// The same for several lines of our own.
    void lines(const QString& text);

    /// Shows `text` and the seconds waited until hideStatus(); does nothing where there is no terminal.
    void showStatus(const QString& text);
    void hideStatus();
    /// Removes the status line at once; may be called from any thread, also while another one draws it.
    void dropStatus();

private:
    Console();

    void write(const QString& printableText);
    void tick(const std::stop_token& stop);
    void draw() const;
    void erase() const;

    const bool isTerminal;
    std::mutex guard;
    std::condition_variable_any changed;
    QString status;
    std::chrono::steady_clock::time_point since;
    std::jthread ticker;
};

/// Shows a status line for as long as it lives.
class ShownStatus
{
public:
    explicit ShownStatus(const QString& text) { Console::instance().showStatus(text); }
    ~ShownStatus() { Console::instance().hideStatus(); }
    Q_DISABLE_COPY_MOVE(ShownStatus)
};

} // namespace frhost
