#pragma once

#include <QCoreApplication>

namespace frhost {

/// Texts for people: `Text::tr("...")` gives the translation for the user's locale.
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Text)
};

} // namespace frhost
