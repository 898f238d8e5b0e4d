# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# A program's manual page and completions, made by the program itself, in the folders of the build tree that they are
# installed to. The page's prose is docs/man/PROGRAM.1.in.
function(qvsonglrc_manual program)
    set(template ${PROJECT_SOURCE_DIR}/docs/man/${program}.1.in)
    set(script ${PROJECT_SOURCE_DIR}/cmake/MakeManual.cmake)
    set(share ${PROJECT_BINARY_DIR}/share)
    set(page ${share}/man/man1/${program}.1)
    set(bash ${share}/bash-completion/completions/${program})
    set(zsh ${share}/zsh/vendor-completions/_${program})
    add_custom_command(OUTPUT ${page} ${bash} ${zsh}
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DPROJECT_VERSION=${PROJECT_VERSION}
                -DTEMPLATE=${template} -DPAGE=${page} -DBASH=${bash} -DZSH=${zsh} -P ${script}
        DEPENDS ${program} ${template} ${script}
        VERBATIM)
    add_custom_target(${program}_manual ALL DEPENDS ${page} ${bash} ${zsh})
    if(QVSONGLRC_INSTALL)
        install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT QVSongLrc_Programs)
        install(FILES ${bash}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            COMPONENT QVSongLrc_Programs)
        # zsh looks in its own folder; in Debian what packages bring has one beside that.
        set(functions site-functions)
        if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
            set(functions vendor-completions)
        endif()
        install(FILES ${zsh}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${functions}
            COMPONENT QVSongLrc_Programs)
    endif()
endfunction()
