# `cmake --install BUILD --prefix ANYWHERE`. What is installed may be moved as a whole afterwards: nothing in it knows
# the prefix.
include(CMakePackageConfigHelpers)

# install_rpath(TARGET FOLDER): the target, installed in the folder, finds our library.
function(install_rpath target folder)
    file(RELATIVE_PATH library /${folder} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${library})
endfunction()

install_rpath(frhost ${CMAKE_INSTALL_BINDIR})
install_rpath(plugin ${FRDRIVER_INSTALLED_PLUGINS})
install(TARGETS frhost RUNTIME COMPONENT frhost)
install(TARGETS fremulator RUNTIME COMPONENT fremulator)
install(TARGETS plugin LIBRARY DESTINATION ${FRDRIVER_INSTALLED_PLUGINS} COMPONENT plugin)
install(TARGETS host EXPORT frdriver
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT sdk
    INCLUDES DESTINATION ${FRDRIVER_INSTALLED_HEADERS})
install(TARGETS frbase EXPORT frdriver
    ARCHIVE COMPONENT sdk
    INCLUDES DESTINATION ${FRDRIVER_INSTALLED_HEADERS})

# The headers of the contract and of drivers, with the paths that they have here. Not the workings of the runtime.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/host ${PROJECT_SOURCE_DIR}/frbase
    DESTINATION ${FRDRIVER_INSTALLED_HEADERS} COMPONENT sdk
    FILES_MATCHING PATTERN "*.h"
    PATTERN "basicfrdriver" EXCLUDE
    REGEX "/log/(exchangelog|exchangesecrets|ownlines|secretsearch|spelling)\\.h$" EXCLUDE
    REGEX "/transport/(httpconnection|httpmessage|httptransfer|keptconnection)\\.h$" EXCLUDE
    REGEX "/frbase/qrraster\\.h$" EXCLUDE)

# For CMake: find_package(frdriver).
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/frdriver)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/frdriverConfig.cmake.in
    ${PROJECT_BINARY_DIR}/installed/frdriverConfig.cmake
    INSTALL_DESTINATION ${package} PATH_VARS FRDRIVER_INSTALLED_PLUGINS NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/installed/frdriverConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT frdriver FILE frdriverTargets.cmake NAMESPACE frdriver:: DESTINATION ${package} COMPONENT sdk)
install(FILES
    ${PROJECT_BINARY_DIR}/installed/frdriverConfig.cmake
    ${PROJECT_BINARY_DIR}/installed/frdriverConfigVersion.cmake
    ${PROJECT_SOURCE_DIR}/cmake/FindQRencode.cmake
    DESTINATION ${package} COMPONENT sdk)

# For everything else: pkg-config frdriver.
set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_of_pkgconfig /${pkgconfig} /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/frdriver.pc.in ${PROJECT_BINARY_DIR}/installed/frdriver.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/installed/frdriver.pc DESTINATION ${pkgconfig} COMPONENT sdk)

# Below /usr, systemd finds it here.
install(FILES ${PROJECT_SOURCE_DIR}/hostcli/systemd/frhost-queue@.service DESTINATION lib/systemd/system
    COMPONENT frhost)
install(FILES ${PROJECT_SOURCE_DIR}/docs/receipt.schema.json ${PROJECT_SOURCE_DIR}/docs/result.schema.json
    DESTINATION ${FRDRIVER_INSTALLED_DATA} COMPONENT frhost)
set(examples ${PROJECT_SOURCE_DIR}/examples)
install(DIRECTORY ${examples} DESTINATION ${FRDRIVER_INSTALLED_DATA} COMPONENT frhost
    FILES_MATCHING PATTERN "*.json" PATTERN "*.jsonl" PATTERN "*.ini"
    PATTERN "minimalhost" EXCLUDE PATTERN "serialdriver" EXCLUDE)
install(DIRECTORY ${examples}/minimalhost ${examples}/serialdriver DESTINATION ${FRDRIVER_INSTALLED_DATA}/examples
    COMPONENT sdk)
# The guide for those who write a host or a driver, and what it links to.
set(docs ${PROJECT_SOURCE_DIR}/docs)
install(FILES ${docs}/install.md ${docs}/abi.md ${docs}/reliability.md ${docs}/journal.md ${docs}/frhost.md
    ${docs}/queue.md
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libfrhostruntime-dev COMPONENT sdk)
