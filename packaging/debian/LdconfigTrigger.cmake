# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# CPack runs this on the finished packages. It gives a package with a shared library maintainer scripts that call
# ldconfig. This replaces them with Debian's trigger, which runs ldconfig once for all packages of an installation.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(tree ${package}.tree)
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
    if(EXISTS ${tree}/DEBIAN/symbols)
        file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
        file(WRITE ${tree}/DEBIAN/triggers "activate-noawait ldconfig\n")
        file(CHMOD ${tree}/DEBIAN/triggers PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
        execute_process(
            COMMAND dpkg-deb --root-owner-group -Zxz --build ${tree} ${package}
            OUTPUT_QUIET
            COMMAND_ERROR_IS_FATAL ANY)
    endif()
    file(REMOVE_RECURSE ${tree})
endforeach()
