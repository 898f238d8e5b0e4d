# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# CPack runs this on the installed trees, one per component, before it makes packages of them.
set(trees ${CPACK_COMPONENTS_ALL})
list(TRANSFORM trees PREPEND ${CPACK_TEMPORARY_DIRECTORY}/)
list(TRANSFORM trees APPEND /usr/share/man/man1/*.1 OUTPUT_VARIABLE pages)
file(GLOB pages ${pages})
if(pages)
    execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()

# dpkg-shlibdeps runs in each tree that has binaries. It reads there in debian/shlibs.local which packages our own
# libraries are in. CPack deletes the folder debian afterwards.
set(shlibs)
set(trees_with_binaries)
foreach(component tree IN ZIP_LISTS CPACK_COMPONENTS_ALL trees)
    file(GLOB library ${tree}/usr/lib/*/lib*.so.?)
    file(GLOB program ${tree}/usr/bin/*)
    if(library MATCHES "/([^/]+)\\.so\\.(.)$")
        string(TOUPPER CPACK_DEBIAN_${component}_PACKAGE_NAME name)
        string(APPEND shlibs "${CMAKE_MATCH_1} ${CMAKE_MATCH_2} ${${name}} (>= ${CPACK_PACKAGE_VERSION})\n")
    endif()
    if(library OR program)
        list(APPEND trees_with_binaries ${tree})
    endif()
endforeach()
foreach(tree IN LISTS trees_with_binaries)
    file(WRITE ${tree}/debian/shlibs.local "${shlibs}")
endforeach()
