#pragma once

#include "host/export.h"
#include "host/records/excisemarktype.h"
#include "host/records/fdrequisite.h"

#include <QString>

/// Helpers for fiscal records.
class HOST_EXPORT FrUtils
{
public:
    /// The product code (tag 1162, fiscal data format 1.05) of a marking code as scanned: two bytes for the
    /// kind, six bytes of GTIN for trade items, then the serial; at most 32 bytes.
    ///
    /// Known forms are GS1 DataMatrix (01 + GTIN + 21 + serial), packs and blocks of tobacco, EAN-13 and the
    /// control sign of a fur product. For a code of any other form the requisite has no raw data: nothing is
    /// guessed.
    ///
    /// A DataMatrix serial ends at the GS character (0x1D). Where the scanner has dropped the GS characters,
    /// a serial that continues with 91, 92 or 93 after 13 characters is taken to end there.
    [[nodiscard]] static FdRequisite createNomenclatureCodeRequisite(
        const QString& markingCode, ExciseMarkType type);
};
