#pragma once

#include "hostcli/queue/queueline.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace frhost {

/// The part of the command line that belongs to `queue`.
class QueueArguments
{
public:
    /// Adds its subcommands to the command. `files` are those of `add`, borrowed.
    void addTo(CLI::App& command, std::vector<std::string>& files);
    /// What was read.
    [[nodiscard]] QueueLine line() const;

private:
    QueueAction action = QueueAction::List;
    std::vector<std::string> ids;
    std::string newId;
    std::string state;
    qint64 after = 0;
    bool follow = false;
    bool untilEmpty = false;
    bool ask = false;
    bool openMetrics = false;
    std::string age;
};

} // namespace frhost
