#include "hostcli/terminal/appearance.h"

#include <QByteArray>

namespace frhost {

bool showsColours()
{
    return qEnvironmentVariableIsEmpty("NO_COLOR") && showsPictures();
}

bool showsPictures()
{
    return qgetenv("TERM") != "dumb";
}

} // namespace frhost
