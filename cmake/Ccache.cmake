# Compiles through ccache where it is installed, unless a launcher is given or given as empty. Paths are hashed relative
# to the tree, so that a second clone finds what the first one compiled, and precompiled headers are cached too.
find_program(CCACHE ccache)
mark_as_advanced(CCACHE)
if(CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()
