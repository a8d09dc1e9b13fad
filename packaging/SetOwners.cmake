# After an installation: owners and modes that the helper insists on, or a word about who has to set them.
set(library "$ENV{DESTDIR}/Library")
set(shared "${library}" "${library}/Printers" "${library}/Application Support")
set(own "${library}/Printers/QUORVEX" "${library}/Application Support/QUORVEX")
set(helper "${library}/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/MacOS/R4270Helper")

# Folders above the installed files are made with the caller's file mode mask.
execute_process(COMMAND chmod a+rx ${shared} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND find ${own} -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY)

execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT user STREQUAL "0")
    message(STATUS "Not installed as root: before use, ${library} and everything of the driver below it must "
        "belong to root:root, and ${helper} must have mode 4755")
    return()
endif()
# The lists themselves are the helper's business and root's already.
execute_process(COMMAND chown root:root ${shared} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND chown -R root:root ${own} COMMAND_ERROR_IS_FATAL ANY)
# A change of owner takes the set-id bit away, so the mode comes last.
execute_process(COMMAND chmod 4755 "${helper}" COMMAND_ERROR_IS_FATAL ANY)
foreach(folder IN LISTS shared)
    execute_process(COMMAND find "${folder}" -maxdepth 0 -perm /022 OUTPUT_VARIABLE writable)
    if(NOT writable STREQUAL "")
        message(WARNING "${folder} can be written by others than root: the helper will refuse to work. "
            "Correct it with: chmod go-w '${folder}'")
    endif()
endforeach()
