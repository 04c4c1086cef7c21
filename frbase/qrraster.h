#pragma once

/// Returns the byte with its bits in reverse order: bit 7 and bit 0 swapped, bit 6 and bit 1, and so on.
[[nodiscard]] unsigned char reverseBits(unsigned char byte);
