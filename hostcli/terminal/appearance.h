#pragma once

namespace frhost {

// What a terminal can show; the answers hold for the whole run.

/// Whether a word may be coloured: not where $NO_COLOR is set and not empty, and not on a "dumb" terminal.
[[nodiscard]] bool showsColours();

/// Whether a picture made of characters comes out right.
[[nodiscard]] bool showsPictures();

} // namespace frhost
