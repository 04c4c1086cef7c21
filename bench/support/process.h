#pragma once

namespace bench {

/// Kilobytes of this process that are in memory.
[[nodiscard]] long residentKilobytes();
/// File descriptors that this process has open.
[[nodiscard]] int openFiles();
/// Seconds of processor time that this process has used, in all threads.
[[nodiscard]] double processorSeconds();

} // namespace bench
