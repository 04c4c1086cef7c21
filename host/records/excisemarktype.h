#pragma once

/// Kind of the marking code of a line. Drivers pass it on without looking at it.
enum class ExciseMarkType : int
{
    /// The kind is told by the form of the scanned code.
    ByForm = 0,
    /// Control sign of a fur product.
    Fur = 1,
    /// Pack or block of tobacco: the maximum retail price belongs to the code.
    Tobacco = 2,
};
