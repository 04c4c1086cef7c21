#include "hostcli/interruption.h"

#include "hostcli/console.h"
#include "hostcli/failure.h"
#include "hostcli/text.h"

#include <cstdlib>

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
