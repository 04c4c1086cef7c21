# Man pages and completions, made by the programs themselves from their own options, so that none can be forgotten.
set(FRDRIVER_RELEASED 2026-11-22) # the date that the man pages show

# write_head(FILE NAME SECTION): the first line of a man page.
function(write_head file name section)
    string(TOUPPER ${name} title)
    file(WRITE ${file} ".TH ${title} ${section} \"${FRDRIVER_RELEASED}\" \"frdriver ${PROJECT_VERSION}\"\n")
endfunction()

# make_reference(PROGRAM FOLDER): its man page, with the sections that FOLDER holds, and its completions.
function(make_reference program texts)
    set(folder ${PROJECT_BINARY_DIR}/reference)
    set(made)
    foreach(format title options bash zsh fish)
        set(file ${folder}/${program}.${format})
        add_custom_command(OUTPUT ${file}
            COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C $<TARGET_FILE:${program}> --reference ${format} > ${file}
            DEPENDS ${program} VERBATIM)
        list(APPEND made ${file})
    endforeach()
    set(page ${folder}/${program}.1)
    set(parts ${folder}/${program}.head ${folder}/${program}.title ${texts}/${program}.description
        ${folder}/${program}.options ${texts}/${program}.files)
    write_head(${folder}/${program}.head ${program} 1)
    add_custom_command(OUTPUT ${page}
        COMMAND ${CMAKE_COMMAND} -E cat ${parts} > ${page}
        DEPENDS ${parts} VERBATIM)
    # Within another project, nobody asks for it.
    set(all)
    if(FRDRIVER_INSTALL OR BUILD_TESTING)
        set(all ALL)
    endif()
    add_custom_target(reference_${program} ${all} DEPENDS ${made} ${page})
    if(FRDRIVER_INSTALL)
        install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${program})
        set(completions ${CMAKE_INSTALL_DATADIR})
        install(FILES ${folder}/${program}.bash RENAME ${program} COMPONENT ${program}
            DESTINATION ${completions}/bash-completion/completions)
        install(FILES ${folder}/${program}.zsh RENAME _${program} COMPONENT ${program}
            DESTINATION ${completions}/zsh/vendor-completions)
        install(FILES ${folder}/${program}.fish COMPONENT ${program}
            DESTINATION ${completions}/fish/vendor_completions.d)
    endif()
endfunction()

make_reference(frhost ${PROJECT_SOURCE_DIR}/hostcli/man)
make_reference(fremulator ${PROJECT_SOURCE_DIR}/emulator/man)

set(page ${PROJECT_BINARY_DIR}/reference/register.ini.5)
configure_file(${PROJECT_SOURCE_DIR}/hostcli/man/register.ini.5.in ${page} @ONLY)
if(FRDRIVER_INSTALL)
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT frhost)
endif()
