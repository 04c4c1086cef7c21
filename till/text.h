#pragma once

#include <QCoreApplication>

namespace till {

/// Texts for people: `Text::tr("...")` gives the translation that the program has installed for the user's
/// locale, or the English text where it has installed none.
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Text)
};

} // namespace till
