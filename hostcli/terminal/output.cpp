#include "hostcli/terminal/output.h"

#include <cerrno>

namespace frhost {

bool Output::write(const QByteArray& bytes)
{
    for (qsizetype done = 0; done < bytes.size() && cause.isEmpty();) {
        const ssize_t part =
            ::write(descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (part >= 0)
            done += part;
        else if (errno != EINTR)
            cause = qt_error_string(errno);
    }
    return cause.isEmpty();
}

} // namespace frhost
