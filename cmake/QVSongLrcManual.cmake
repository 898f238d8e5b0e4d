# A program's manual page and completions, made by the program itself, in the folders of the build tree that they are
# installed to. The page's prose is docs/man/PROGRAM.1.in.
find_program(QVSONGLRC_GZIP gzip) # pages are installed packed, where it is there
mark_as_advanced(QVSONGLRC_GZIP)

function(qvsonglrc_manual program)
    set(template ${PROJECT_SOURCE_DIR}/docs/man/${program}.1.in)
    set(script ${PROJECT_SOURCE_DIR}/cmake/MakeManual.cmake)
    set(share ${PROJECT_BINARY_DIR}/share)
    set(page ${share}/man/man1/${program}.1)
    set(bash ${share}/bash-completion/completions/${program})
    set(zsh ${share}/zsh/vendor-completions/_${program})
    set(installed_page ${page})
    set(pack)
    if(QVSONGLRC_GZIP)
        set(installed_page ${page}.gz)
        set(pack COMMAND ${QVSONGLRC_GZIP} -9nkf ${page})
    endif()
    add_custom_command(OUTPUT ${page} ${installed_page} ${bash} ${zsh}
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DPROJECT_VERSION=${PROJECT_VERSION}
                -DTEMPLATE=${template} -DPAGE=${page} -DBASH=${bash} -DZSH=${zsh} -P ${script}
        ${pack}
        DEPENDS ${program} ${template} ${script}
        VERBATIM)
    add_custom_target(${program}_manual ALL DEPENDS ${page} ${bash} ${zsh})
    if(QVSONGLRC_INSTALL)
        install(FILES ${installed_page}
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
            COMPONENT QVSongLrc_Programs)
        install(FILES ${bash}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            COMPONENT QVSongLrc_Programs)
        install(FILES ${zsh}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
            COMPONENT QVSongLrc_Programs)
    endif()
endfunction()
