# Before anything is installed: nobody but root may be able to change what is installed, or put something in
# its place. Looks at every folder from the root folder down to those in FOLDERS (absolute, or below the prefix)
# and at whatever stands in the driver's own, names what is wrong, and stops; else makes the missing folders.
# In a tree for a package, below DESTDIR, whoever makes it may own it.
set(root "$ENV{DESTDIR}")
execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)

set(levels "${root}/")
foreach(folder IN LISTS FOLDERS)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
    string(REGEX MATCHALL "[^/]+" names "${folder}")
    set(level "${root}")
    foreach(name IN LISTS names)
        string(APPEND level "/${name}")
        list(APPEND levels "${level}")
    endforeach()
endforeach()
list(REMOVE_DUPLICATES levels)
set(present "")
set(missing "")
foreach(level IN LISTS levels)
    if(EXISTS "${level}" OR IS_SYMLINK "${level}")
        list(APPEND present "${level}")
    else()
        list(APPEND missing "${level}")
    endif()
endforeach()

set(wrong
    -type l -printf "  %p is a link\\n" -o
    ! -uid 0 ! -uid "${user}" -printf "  %p belongs to %u\\n" -o
    -perm /022 -printf "  %p can be written by others than its owner (correct it with chmod go-w)\\n")
set(problems "")
if(present)
    execute_process(COMMAND find ${present} -maxdepth 0 ( ${wrong} -o ! -type d -printf "  %p is no folder\\n" )
        OUTPUT_VARIABLE problems COMMAND_ERROR_IS_FATAL ANY)
endif()
foreach(own IN ITEMS "${root}/Library/Printers/QUORVEX" "${root}/Library/Application Support/QUORVEX")
    if(IS_DIRECTORY "${own}")
        execute_process(COMMAND find "${own}" -mindepth 1 ( ${wrong} )
            OUTPUT_VARIABLE more COMMAND_ERROR_IS_FATAL ANY)
        string(APPEND problems "${more}")
    endif()
endforeach()
if(problems)
    message(FATAL_ERROR "Nothing was installed, since others than root could change it:\n${problems}")
endif()

# Whatever the caller's file mode mask is.
foreach(level IN LISTS missing)
    file(MAKE_DIRECTORY "${level}")
    file(CHMOD "${level}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
        WORLD_READ WORLD_EXECUTE)
endforeach()

if(NOT user EQUAL 0)
    message(STATUS "Not installed as root: before use everything below ${root}/Library must belong to "
        "root:root, and R4270Helper must have mode 4755 after that")
endif()
