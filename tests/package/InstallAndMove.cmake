# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Installs BINARY_DIR into a folder and moves that to PREFIX, so that no path of the first folder can be in use.
file(REMOVE_RECURSE ${PREFIX} ${PREFIX}.before)
execute_process(
    COMMAND ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${PREFIX}.before
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${PREFIX}.before ${PREFIX})
