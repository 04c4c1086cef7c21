#include "hostcli/terminal/interruption.h"

#include "hostcli/failure.h"
#include "hostcli/terminal/console.h"
#include "till/text.h"

#include <cstdlib>

using till::Text;

namespace frhost {

void endInterrupted()
{
    std::_Exit(static_cast<int>(ExitCode::Unknown));
}

void sayInterruptedAndEnd()
{
    Console::instance().dropStatus();
    Console::instance().line(Text::tr("Interrupted."));
    endInterrupted();
}

} // namespace frhost
