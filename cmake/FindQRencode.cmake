# Finds libqrencode as the target QRencode::QRencode.
find_path(QRencode_INCLUDE_DIR qrencode.h)
find_library(QRencode_LIBRARY qrencode)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(QRencode REQUIRED_VARS QRencode_LIBRARY QRencode_INCLUDE_DIR)

if(QRencode_FOUND AND NOT TARGET QRencode::QRencode)
    add_library(QRencode::QRencode UNKNOWN IMPORTED)
    set_target_properties(QRencode::QRencode PROPERTIES
        IMPORTED_LOCATION "${QRencode_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${QRencode_INCLUDE_DIR}")
endif()
mark_as_advanced(QRencode_INCLUDE_DIR QRencode_LIBRARY)
