# Embeds the files of the page in a source file: cmake -DDIRECTORY=... -DFILES=a,b -DOUTPUT=... -P embed.cmake
string(REPLACE "," ";" names "${FILES}")
set(types_html "text/html; charset=utf-8")
set(types_css "text/css; charset=utf-8")
set(types_js "text/javascript; charset=utf-8")
set(types_svg "image/svg+xml")
set(rows "")
set(count 0)
foreach(name IN LISTS names)
    file(READ "${DIRECTORY}/${name}" content)
    string(REGEX MATCH "[a-z]+$" suffix "${name}")
    string(APPEND rows "    PageFile{\"/${name}\", \"${types_${suffix}}\", R\"EMBEDDED(${content})EMBEDDED\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"emulator/page/pagefiles.h\"

#include <array>

namespace emulator {

namespace {

constexpr std::array files{
${rows}};

} // namespace

std::span<const PageFile> pageFiles() { return files; }

} // namespace emulator
")
