# What an attacker would have to get past in a program for users. Not in debug builds, because fortified functions need
# the optimiser, and not with sanitizers, which check more.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

set(HARDENING_COMPILE_OPTIONS -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
# Not every processor has them.
foreach(flag -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER HAVE${flag} known)
    check_cxx_compiler_flag("${flag} -Werror" ${known})
    if(${known})
        list(APPEND HARDENING_COMPILE_OPTIONS ${flag})
    endif()
endforeach()
set(HARDENING_LINK_OPTIONS -Wl,-z,relro,-z,now)

set(HARDENED OFF)
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT FRDRIVER_SANITIZE)
    set(HARDENED ON)
    add_compile_options(${HARDENING_COMPILE_OPTIONS})
    add_link_options(${HARDENING_LINK_OPTIONS})
endif()
