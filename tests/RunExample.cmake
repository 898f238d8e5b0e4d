# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Runs FOLDER/commands.sh with FOLDER in PATH, and fails unless it prints the contents of FOLDER/expected.txt.
set(place ${FOLDER}/run)
file(REMOVE_RECURSE ${place})
file(MAKE_DIRECTORY ${place})
file(CREATE_LINK ${SAMPLES} ${place}/samples SYMBOLIC)
set(ENV{PATH} "${FOLDER}:$ENV{PATH}")
execute_process(COMMAND sh -eu ${FOLDER}/commands.sh WORKING_DIRECTORY ${place}
    OUTPUT_VARIABLE printed RESULT_VARIABLE status)
file(READ ${FOLDER}/expected.txt expected)
if(NOT status EQUAL 0 OR NOT printed STREQUAL expected)
    message(FATAL_ERROR "status ${status}, printed:\n${printed}expected:\n${expected}")
endif()
