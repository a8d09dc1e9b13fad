# After an installation: owners and modes that the helper insists on, or a word about who has to set them.
set(folders
    "/Library"
    "/Library/Printers"
    "/Library/Printers/QUORVEX"
    "/Library/Printers/QUORVEX/Preferences"
    "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270"
    "/Library/Application Support/QUORVEX/R4270/Helpers")
set(programs "$ENV{DESTDIR}/Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app")
list(TRANSFORM folders PREPEND "$ENV{DESTDIR}")

execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT user STREQUAL "0")
    message(STATUS "Not installed as root: before use, the folders above and everything below "
        "${programs} must belong to root, and R4270Helper must have mode 4755")
    return()
endif()
execute_process(COMMAND chown root:root ${folders} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND chown -R root:root "${programs}" COMMAND_ERROR_IS_FATAL ANY)
# A change of owner takes the set-id bit away, so the mode comes last.
execute_process(COMMAND chmod 4755 "${programs}/Contents/MacOS/R4270Helper" COMMAND_ERROR_IS_FATAL ANY)
foreach(folder IN LISTS folders)
    execute_process(COMMAND find "${folder}" -maxdepth 0 -perm /022 OUTPUT_VARIABLE writable)
    if(NOT writable STREQUAL "")
        message(WARNING "${folder} can be written by others than root: the helper will refuse to work. "
            "Correct it with: chmod go-w '${folder}'")
    endif()
endforeach()
