#include "hostcli/terminal/interruption.h"

#include "hostcli/terminal/console.h"
#include "till/text.h"

#include <cstdlib>

using till::Text;

namespace frhost {

void endInterrupted(ExitCode status)
{
    std::_Exit(static_cast<int>(status));
}

void sayInterruptedAndEnd()
{
    Console::instance().dropStatus();
    Console::instance().line(Text::tr("Interrupted."));
    endInterrupted(ExitCode::Unknown);
}

} // namespace frhost
