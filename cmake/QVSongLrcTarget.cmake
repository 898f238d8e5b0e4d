# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
include(GNUInstallDirs)

# Sets what all targets of the project are built with. None of it applies to programs that use the library.
function(qvsonglrc_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib
        ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_CAST_FROM_BYTEARRAY
        QT_NO_URL_CAST_FROM_STRING
        QT_NO_KEYWORDS
        QT_NO_FOREACH)
    if(NOT PROJECT_IS_TOP_LEVEL) # our warnings must not fail a host project's build
        set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR OFF)
    endif()
    # With clang only the program contains the sanitizer's runtime, so the libraries have undefined symbols.
    if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_FLAGS MATCHES "-fsanitize"))
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
endfunction()

# Sets what the libraries have in common. HEADERS are the public headers.
function(qvsonglrc_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS")
    qvsonglrc_target(${target})
    string(REPLACE QVSongLrc "" component ${target})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${component}
        INSTALL_RPATH "$ORIGIN"
        POSITION_INDEPENDENT_CODE ON
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    qvsonglrc_headers(${target} ${arg_HEADERS})
    target_compile_features(${target} PUBLIC cxx_std_20)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL STATIC_LIBRARY)
        target_compile_definitions(${target} PUBLIC QVSONGLRC_STATIC)
    else()
        target_link_options(${target} PRIVATE LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
        set_property(TARGET ${target} APPEND PROPERTY
            LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    endif()
endfunction()

# Adds public headers, named relative to include/QVSongLrc.
function(qvsonglrc_headers target)
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/include/QVSongLrc/ OUTPUT_VARIABLE headers)
    target_sources(${target} PUBLIC
        FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/include FILES ${headers})
endfunction()

# Sets what the programs have in common, and installs a program with its manual page and its completions.
function(qvsonglrc_program target)
    qvsonglrc_target(${target})
    # Relative, so that an installed folder can be moved.
    file(RELATIVE_PATH libdir ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir}")
    if(NOT QVSONGLRC_INSTALL)
        return()
    endif()
    set(completions ${PROJECT_SOURCE_DIR}/packaging/completions)
    install(TARGETS ${target} RUNTIME COMPONENT ${target})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/man/${target}.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT ${target})
    install(FILES ${completions}/${target}.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME ${target}
        COMPONENT ${target})
    # Debian has a folder of its own for the zsh completions that packages install.
    set(functions site-functions)
    if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
        set(functions vendor-completions)
    endif()
    install(FILES ${completions}/_${target}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${functions}
        COMPONENT ${target})
endfunction()
