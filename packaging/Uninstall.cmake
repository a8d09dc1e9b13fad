# Removes what the last installation from this build folder put there, then the driver's folders that have
# become empty. The users' profile lists stay, and so does the folder that holds them.
if(NOT EXISTS "${MANIFEST}")
    message(FATAL_ERROR "Nothing was installed from this build folder: ${MANIFEST} is missing")
endif()
file(STRINGS "${MANIFEST}" files)
foreach(file IN LISTS files)
    if(EXISTS "$ENV{DESTDIR}${file}" OR IS_SYMLINK "$ENV{DESTDIR}${file}")
        message(STATUS "Removing $ENV{DESTDIR}${file}")
        file(REMOVE "$ENV{DESTDIR}${file}")
    endif()
    cmake_path(GET file PARENT_PATH folder)
    if(folder MATCHES "/(QUORVEX|R4270)$")
        list(APPEND folders "$ENV{DESTDIR}${folder}")
    endif()
endforeach()

set(library "$ENV{DESTDIR}/Library")
set(preferences "${library}/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270")
# Locks and unfinished writes of the helper.
file(GLOB leftovers "${preferences}/.R4270-*")
if(leftovers)
    file(REMOVE ${leftovers})
endif()
execute_process(COMMAND find
    "${library}/Application Support/QUORVEX" "${library}/Printers/QUORVEX" ${folders}
    -depth -type d -empty -delete ERROR_QUIET)
if(EXISTS "${preferences}")
    message(STATUS "The users' profile lists stay in ${preferences}")
endif()
