# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Writes PAGE, from TEMPLATE, and the completions BASH and ZSH with what PROGRAM tells of its command line.
function(generate part variable)
    execute_process(COMMAND ${PROGRAM} --generate ${part} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(STRIP "${text}" text)
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

generate(synopsis SYNOPSIS)
generate(options OPTIONS)
configure_file(${TEMPLATE} ${PAGE} @ONLY)
generate(bash COMPLETION)
file(WRITE ${BASH} "${COMPLETION}\n")
generate(zsh COMPLETION)
file(WRITE ${ZSH} "${COMPLETION}\n")
