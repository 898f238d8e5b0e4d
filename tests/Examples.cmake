# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Compiles and runs the examples in the documentation.

# Sets `variable` to the first code block in `language` below `heading` of `page`, or to nothing if there is none.
function(qvsonglrc_block page heading language variable)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${page})
    file(READ ${PROJECT_SOURCE_DIR}/${page} text)
    string(FIND "${text}" "\n${heading}\n" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "${page} has no heading ${heading}")
    endif()
    string(SUBSTRING "${text}" ${start} -1 text)
    string(FIND "${text}" "\n## " end REVERSE) # cut off each later section
    while(end GREATER 0)
        string(SUBSTRING "${text}" 0 ${end} text)
        string(FIND "${text}" "\n## " end REVERSE)
    endwhile()
    set(block)
    string(FIND "${text}" "\n```${language}\n" start)
    if(NOT start EQUAL -1)
        string(LENGTH "\n```${language}\n" fence)
        math(EXPR start "${start} + ${fence}")
        string(SUBSTRING "${text}" ${start} -1 text)
        string(FIND "${text}" "```" end)
        string(SUBSTRING "${text}" 0 ${end} block)
    endif()
    set(${variable} "${block}" PARENT_SCOPE)
endfunction()

# Adds the test `name`: the `sh` block below `heading` of `page` must print the `text` block. If there is a `cpp` block,
# it is built as the program `lyrics`, linked with the libraries in ARGN. Without an `sh` block the program is run. The
# commands find the folder `samples` in the current folder.
function(qvsonglrc_example name page heading)
    qvsonglrc_block(${page} "${heading}" cpp program)
    qvsonglrc_block(${page} "${heading}" sh commands)
    qvsonglrc_block(${page} "${heading}" text expected)
    if(NOT expected)
        message(FATAL_ERROR "${page} has no example below ${heading}")
    endif()
    if(NOT commands)
        set(commands lyrics)
    endif()
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/examples/${name})
    file(MAKE_DIRECTORY ${folder})
    file(CONFIGURE OUTPUT ${folder}/commands.sh CONTENT "${commands}" @ONLY)
    file(CONFIGURE OUTPUT ${folder}/expected.txt CONTENT "${expected}" @ONLY)
    if(program)
        file(CONFIGURE OUTPUT ${folder}/main.cpp CONTENT "${program}" @ONLY)
        add_executable(${name} ${folder}/main.cpp)
        target_link_libraries(${name} PRIVATE ${ARGN})
        set_target_properties(${name} PROPERTIES OUTPUT_NAME lyrics RUNTIME_OUTPUT_DIRECTORY ${folder})
    endif()
    add_test(NAME ${name}
        COMMAND ${CMAKE_COMMAND} -DFOLDER=${folder} -DSAMPLES=${PROJECT_SOURCE_DIR}/samples
                -P ${CMAKE_CURRENT_SOURCE_DIR}/RunExample.cmake)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "LC_ALL=C.UTF-8")
endfunction()
