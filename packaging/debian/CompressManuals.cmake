# Debian's manual pages are compressed.
file(GLOB_RECURSE pages ${CPACK_TEMPORARY_DIRECTORY}/*/man/man1/*.1)
if(pages)
    execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()
