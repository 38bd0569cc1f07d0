# Run by CPack on the staged files: what Debian wants otherwise than `cmake --install` leaves it.
file(GLOB_RECURSE pages ${CPACK_TEMPORARY_DIRECTORY}/usr/share/man/*.1
    ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/tarn/changelog)
foreach(page ${pages})
    execute_process(COMMAND gzip -9nf ${page} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
# The text of the licence is on every Debian system.
file(REMOVE ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/tarn/LICENSE)
