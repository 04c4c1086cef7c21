#include "hostcli/terminal/printable.h"

namespace frhost {

QString printable(QString text)
{
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace frhost
