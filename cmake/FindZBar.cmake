# Finds zbar, a reader of bar codes, as the target ZBar::ZBar.
find_path(ZBar_INCLUDE_DIR zbar.h)
find_library(ZBar_LIBRARY zbar)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ZBar REQUIRED_VARS ZBar_LIBRARY ZBar_INCLUDE_DIR)

if(ZBar_FOUND AND NOT TARGET ZBar::ZBar)
    add_library(ZBar::ZBar UNKNOWN IMPORTED)
    set_target_properties(ZBar::ZBar PROPERTIES
        IMPORTED_LOCATION "${ZBar_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${ZBar_INCLUDE_DIR}")
endif()
mark_as_advanced(ZBar_INCLUDE_DIR ZBar_LIBRARY)
