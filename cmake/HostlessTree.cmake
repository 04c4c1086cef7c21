# hostless_tree(OUT): sets OUT to an include folder from which the driver's folders are reached, but not host/. What
# includes a header that another host does not supply then finds none instead of ours.
function(hostless_tree out)
    set(tree ${PROJECT_BINARY_DIR}/hostless)
    file(MAKE_DIRECTORY ${tree})
    foreach(folder frbase atolonline driver plugin)
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${tree}/${folder} SYMBOLIC)
    endforeach()
    set(${out} ${tree} PARENT_SCOPE)
endfunction()
