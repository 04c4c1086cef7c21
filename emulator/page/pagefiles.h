#pragma once

#include <span>
#include <string_view>

namespace emulator {

/// A file of the page, embedded in the program at build time.
struct PageFile
{
    std::string_view path;
    std::string_view contentType;
    std::string_view body;
};

[[nodiscard]] std::span<const PageFile> pageFiles();

} // namespace emulator
