#pragma once

/// The byte with its bits in the opposite order: bit 7 and bit 0 exchanged, bit 6 and bit 1, and so on.
[[nodiscard]] unsigned char reverseBits(unsigned char byte);
