# Where everything is built to: programs in bin/, plugins in plugins/, the shared host library in lib/. They find one
# another by relative paths.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(FRDRIVER_PLUGIN_DIR ${PROJECT_BINARY_DIR}/plugins)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
