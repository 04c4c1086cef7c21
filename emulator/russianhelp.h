#pragma once

namespace CLI {
class App;
}

/// Puts the help of all options into Russian.
void helpInRussian(CLI::App& app);

/// Whether the environment asks for messages in Russian.
[[nodiscard]] bool wantsRussian();
