#pragma once

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace frhost {

/// How much a line matters, as syslog and the systemd journal number it.
enum class Urgency
{
    Error = 3,
    Warning = 4,
    /// All is well; --quiet leaves it out.
    Notice = 5,
    Info = 6,
    Debug = 7,
};

/// Whether the descriptor leads to the systemd journal, which $JOURNAL_STREAM names ("device:inode").
[[nodiscard]] bool leadsToJournal(int descriptor, const QByteArray& journalStream);

/// The text with the priority that the journal expects at the beginning of each line.
[[nodiscard]] QString withPriority(const QString& text, Urgency urgency);

/// Standard error: messages, log lines and, on a terminal, a status line with the seconds that pass. Safe to
/// use from several threads, once quiet and copy are set.
class Console
{
public:
    /// The one console of the process; log lines come from anywhere.
    [[nodiscard]] static Console& instance();
    ~Console();
    Q_DISABLE_COPY_MOVE(Console)

    /// Writes a line above the status line, if there is one. Hidden characters are replaced, line breaks too:
    /// no text from elsewhere can begin a line of its own.
    void line(const QString& text, Urgency urgency = Urgency::Warning);
    /// The same for several lines of our own.
    void lines(const QString& text, Urgency urgency = Urgency::Warning);

    /// From now on, notices and the status line are left out.
    void beQuiet() { isQuiet = true; }
    /// From now on, every line is handed over too, whether it is left out or not.
    using Copy = std::function<void(const QString& text, Urgency urgency)>;
    void setCopy(const Copy& taken) { copy = taken; }
    /// Whether what is written gets date, process and priority from the systemd journal.
    [[nodiscard]] bool isJournal() const { return toJournal; }

    /// Shows `text` and the seconds waited until hideStatus(); does nothing where there is no terminal.
    void showStatus(const QString& text);
    void hideStatus();
    /// Removes the status line at once; may be called from any thread, also while another one draws it.
    void dropStatus();

private:
    Console();

    void write(const QString& printableText, Urgency urgency);
    void tick(const std::stop_token& stop);
    void draw() const;
    void erase() const;

    const bool isTerminal;
    const bool toJournal;
    bool isQuiet = false;
    Copy copy;
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
