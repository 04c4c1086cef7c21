# Where everything is built to: programs in bin/, plugins in plugins/, the shared host library in lib/.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(FRDRIVER_PLUGIN_DIR ${CMAKE_BINARY_DIR}/plugins)
