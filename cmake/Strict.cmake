# One place for what all of our targets are built with. Every target links `strict` privately.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
add_compile_options(-ffp-contract=off) # Fused multiply-add would change roundings to kopecks.

set(FRDRIVER_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler's -fsanitize= takes them")
if(FRDRIVER_SANITIZE)
    add_compile_options(-fsanitize=${FRDRIVER_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${FRDRIVER_SANITIZE})
    # Boost's fences, which ThreadSanitizer does not see; the emulator, whose they are, works in one thread.
    if(FRDRIVER_SANITIZE MATCHES thread AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-tsan)
    endif()
endif()

add_library(strict INTERFACE)
target_compile_options(strict INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wformat=2 -Wimplicit-fallthrough
    -Werror)
# In a unity a source sees the names of others, which it may use for its own, and GCC takes sources for headers.
if(CMAKE_UNITY_BUILD)
    target_compile_options(strict INTERFACE
        "$<IF:$<CXX_COMPILER_ID:GNU>,-Wno-shadow;-Wshadow=local;-Wno-subobject-linkage,-Wno-shadow>")
endif()
# Clang leaves a shared library's sanitizer calls to the program.
if(NOT (FRDRIVER_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
    target_link_options(strict INTERFACE -Wl,--no-undefined)
endif()
if(FRDRIVER_HOST)
    include(HostlessTree)
    hostless_tree(tree)
    target_include_directories(strict INTERFACE ${tree})
else()
    target_include_directories(strict INTERFACE ${PROJECT_SOURCE_DIR})
endif()

# The same for targets that use Qt: no silent conversions, no deprecated calls, no keyword macros.
add_library(strict_qt INTERFACE)
target_link_libraries(strict_qt INTERFACE strict)
# Another host's headers may use all of it.
if(NOT FRDRIVER_HOST)
    target_compile_definitions(strict_qt INTERFACE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_KEYWORDS QT_NO_FOREACH
        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endif()
# moc cuts a long text into literals between the bytes of one character; gcc has no such warning.
target_compile_options(strict_qt INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-invalid-source-encoding>)
