# Test code is compiled far more often than its short runs make up for: it is not optimised in any preset and shares
# precompiled headers. The libraries and programs under test stay as the preset wants them.
add_library(test_code INTERFACE)
target_compile_options(test_code INTERFACE -O0 -g1)
# Headers that are precompiled for a library are good for a program only if both are compiled with -fPIC. Qt 6.4 sees to
# that by itself.
get_target_property(options Qt6::Core INTERFACE_COMPILE_OPTIONS)
if(NOT "${options}" MATCHES -fPIC)
    target_compile_options(test_code INTERFACE -fPIC)
endif()
if(HARDENED) # Fortified functions need the optimiser.
    target_compile_options(test_code INTERFACE -U_FORTIFY_SOURCE)
endif()
# Lets ccache see through the precompiled headers.
target_compile_options(test_code INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)

# frdriver_test_headers(TARGET HEADER): test code that precompiles the header for itself and others.
function(frdriver_test_headers target header)
    target_link_libraries(${target} PRIVATE test_code)
    target_precompile_headers(${target} PRIVATE ${header})
endfunction()

# frdriver_test_code(TARGET OWNER): test code that uses the headers that the owner has precompiled, with the same flags.
function(frdriver_test_code target owner)
    target_link_libraries(${target} PRIVATE test_code)
    target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()
