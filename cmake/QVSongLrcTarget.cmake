# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
include(GNUInstallDirs)

# What every target of the project is built with; nothing of it reaches a program that uses the library.
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
    if(NOT PROJECT_IS_TOP_LEVEL) # a warning of ours is not the host's to mend
        set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR OFF)
    endif()
    # clang's sanitizers leave their symbols to the program
    if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_FLAGS MATCHES "-fsanitize"))
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
endfunction()

# What each of the libraries is, beside that; HEADERS are those that programs include.
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

# Gives a library public headers, which lie in include/QVSongLrc.
function(qvsonglrc_headers target)
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/include/QVSongLrc/ OUTPUT_VARIABLE headers)
    target_sources(${target} PUBLIC
        FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/include FILES ${headers})
endfunction()

# Installs programs, which find the libraries wherever the prefix is moved to.
function(qvsonglrc_program target)
    qvsonglrc_target(${target})
    file(RELATIVE_PATH libdir ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir}")
    if(QVSONGLRC_INSTALL)
        install(TARGETS ${target} RUNTIME COMPONENT QVSongLrc_Programs)
    endif()
endfunction()
