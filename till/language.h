#pragma once

#include "till/text.h"

#include <QLatin1StringView>

namespace till {

/// Whether the texts for people are in Russian, for the texts that are data. "en" is translated into the
/// translation's own name, so that all texts are in one language whatever has chosen it.
[[nodiscard]] inline bool textsAreRussian()
{
    return Text::tr("en") == QLatin1StringView("ru");
}

} // namespace till
