# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Installs the libraries with their headers, the CMake package and the pkg-config files. The dependencies come from
# the targets, so only target_link_libraries() lists them.
include(CMakePackageConfigHelpers)

# Sets the find_dependency() arguments and the pkg-config module of an imported library.
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
        message(FATAL_ERROR "No find_dependency() arguments and pkg-config module are known for ${library}")
    endif()
    set(${cmake_out} ${cmake} PARENT_SCOPE)
    set(${module_out} ${module} PARENT_SCOPE)
endfunction()

# Installs the library QVSongLrc::<component>.
function(qvsonglrc_install_library component)
    set(target QVSongLrc${component})
    # A program needs the private dependencies only if it links the library statically.
    get_target_property(type ${target} TYPE)
    if(type STREQUAL STATIC_LIBRARY)
        get_target_property(libraries ${target} LINK_LIBRARIES)
    else()
        get_target_property(libraries ${target} INTERFACE_LINK_LIBRARIES)
    endif()
    set(dependencies)
    set(requires)
    foreach(library IN LISTS libraries)
        qvsonglrc_dependency(${library} cmake module)
        string(APPEND dependencies "find_dependency(${cmake})\n")
        list(APPEND requires ${module})
    endforeach()
    list(JOIN requires ", " requires)
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
        LIBRARY COMPONENT ${target} NAMELINK_COMPONENT QVSongLrcDevelopment
        ARCHIVE COMPONENT QVSongLrcDevelopment
        FILE_SET HEADERS COMPONENT QVSongLrcDevelopment)
    install(EXPORT ${target}
        FILE ${target}Targets.cmake
        NAMESPACE QVSongLrc::
        DESTINATION ${package_dir}
        COMPONENT QVSongLrcDevelopment)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}Config.cmake
        DESTINATION ${package_dir}
        COMPONENT QVSongLrcDevelopment)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT QVSongLrcDevelopment)
endfunction()

# Installs those of the given components that are built, and the CMake package that finds them.
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
        COMPONENT QVSongLrcDevelopment)
endfunction()
