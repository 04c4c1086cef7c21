#pragma once

/// Kind of the marking code of a line. Drivers pass it on without looking at it.
enum class ExciseMarkType : int
{
    /// To be recognised by the form of the scanned code.
    ByForm = 0,
    /// Control sign of a fur product.
    Fur = 1,
    /// Pack or block of tobacco: its code contains the maximum retail price.
    Tobacco = 2,
};
