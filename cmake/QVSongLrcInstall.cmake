# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# What `cmake --install` puts where, for the libraries: headers, the CMake package and pkg-config files. What a
# library needs is read off its target, so that target_link_libraries() is the one place that says so.
include(CMakePackageConfigHelpers)

# The find_dependency() arguments and the pkg-config module of an imported library.
function(qvsonglrc_dependency library cmake_out module_out)
    if(library MATCHES "^QVSongLrc::(.+)$")
        set(cmake "QVSongLrc${CMAKE_MATCH_1} CONFIG PATHS \${CMAKE_CURRENT_LIST_DIR} NO_DEFAULT_PATH")
        set(module "QVSongLrc${CMAKE_MATCH_1} = ${PROJECT_VERSION}")
    elseif(library MATCHES "^Qt6::(.+)$")
        set(cmake "Qt6 6.4 COMPONENTS ${CMAKE_MATCH_1}")
        set(module "Qt6${CMAKE_MATCH_1} >= 6.4")
    elseif(library MATCHES "^ICU::(.+)$")
        set(cmake "ICU 72 COMPONENTS ${CMAKE_MATCH_1}")
        set(module "icu-${CMAKE_MATCH_1} >= 72")
    elseif(library STREQUAL "OpenSSL::Crypto")
        set(cmake "OpenSSL 3 COMPONENTS Crypto")
        set(module "libcrypto >= 3")
    else()
        message(FATAL_ERROR "How does an installed library find ${library}?")
    endif()
    set(${cmake_out} ${cmake} PARENT_SCOPE)
    set(${module_out} ${module} PARENT_SCOPE)
endfunction()

# Installs the library QVSongLrc::<component>.
function(qvsonglrc_install_library component)
    set(target QVSongLrc${component})
    get_target_property(public ${target} INTERFACE_LINK_LIBRARIES)
    list(FILTER public EXCLUDE REGEX "LINK_ONLY")
    get_target_property(all ${target} LINK_LIBRARIES)
    get_target_property(type ${target} TYPE)

    set(dependencies)
    set(requires)
    set(requires_private)
    foreach(library IN LISTS all)
        qvsonglrc_dependency(${library} cmake module)
        if(library IN_LIST public OR type STREQUAL STATIC_LIBRARY)
            string(APPEND dependencies "find_dependency(${cmake})\n")
            list(APPEND requires ${module})
        else()
            list(APPEND requires_private ${module})
        endif()
    endforeach()
    list(JOIN requires ", " requires)
    list(JOIN requires_private ", " requires_private)
    get_target_property(definitions ${target} INTERFACE_COMPILE_DEFINITIONS)
    set(cflags)
    foreach(definition IN LISTS definitions)
        if(definition)
            string(APPEND cflags " -D${definition}")
        endif()
    endforeach()

    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QVSongLrc)
    file(RELATIVE_PATH up ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
    string(REGEX REPLACE "/$" "" up ${up})
    file(RELATIVE_PATH libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
    file(RELATIVE_PATH includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/QVSongLrc.pc.in ${target}.pc @ONLY)
    file(CONFIGURE OUTPUT ${target}Config.cmake @ONLY CONTENT [[
include(CMakeFindDependencyMacro)
@dependencies@list(APPEND QVSongLrc_targets ${CMAKE_CURRENT_LIST_DIR}/@target@Targets.cmake)
]])
    install(TARGETS ${target} EXPORT ${target}
        LIBRARY COMPONENT QVSongLrc_Libraries NAMELINK_COMPONENT QVSongLrc_Development
        ARCHIVE COMPONENT QVSongLrc_Development
        FILE_SET HEADERS COMPONENT QVSongLrc_Development)
    install(EXPORT ${target}
        FILE ${target}Targets.cmake
        NAMESPACE QVSongLrc::
        DESTINATION ${package_dir}
        COMPONENT QVSongLrc_Development)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}Config.cmake
        DESTINATION ${package_dir}
        COMPONENT QVSongLrc_Development)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT QVSongLrc_Development)
endfunction()

# Installs the libraries of the components named, as far as they are built, and the package that finds them.
function(qvsonglrc_install)
    set(components)
    foreach(component IN LISTS ARGN)
        if(TARGET QVSongLrc${component})
            qvsonglrc_install_library(${component})
            list(APPEND components ${component})
        endif()
    endforeach()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/QVSongLrcConfig.cmake.in QVSongLrcConfig.cmake @ONLY)
    write_basic_package_version_file(QVSongLrcConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/QVSongLrcConfig.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/QVSongLrcConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QVSongLrc
        COMPONENT QVSongLrc_Development)
endfunction()
