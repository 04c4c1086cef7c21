# Where everything is installed to, below any prefix: libraries by architecture, as Debian has them below /usr.
if(CMAKE_LIBRARY_ARCHITECTURE AND NOT DEFINED CMAKE_INSTALL_LIBDIR)
    set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE})
endif()
include(GNUInstallDirs)
set(FRDRIVER_INSTALLED_PLUGINS ${CMAKE_INSTALL_LIBDIR}/frhost/plugins)
set(FRDRIVER_INSTALLED_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/frdriver)
set(FRDRIVER_INSTALLED_DATA ${CMAKE_INSTALL_DATADIR}/frdriver)
