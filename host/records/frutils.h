#pragma once

#include "host/export.h"
#include "host/records/excisemarktype.h"
#include "host/records/fdrequisite.h"

#include <QString>

class HOST_EXPORT FrUtils
{
public:
    /// The product code (tag 1162, fiscal data format 1.05) of a marking code as scanned: two bytes of kind,
    /// for trade items six bytes of GTIN, then the serial; 32 bytes at most.
    ///
    /// Known forms are GS1 DataMatrix (01 + GTIN + 21 + serial), packs and blocks of tobacco, EAN-13 and the
    /// control sign of a fur product. A code of any other form gives a requisite without raw data: nothing is
    /// guessed.
    ///
    /// A DataMatrix serial ends at the GS character (0x1D). Where the scanner has dropped the GS characters,
    /// a serial longer than 13 characters that is followed by the identifiers 91, 92 or 93 is taken to end
    /// before them.
    [[nodiscard]] static FdRequisite createNomenclatureCodeRequisite(
        const QString& markingCode, ExciseMarkType type);
};
