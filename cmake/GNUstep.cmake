# Targets gnustep_base and gnustep_gui, from what gnustep-config says of the installed toolkit.
function(_gs out arg)
    execute_process(COMMAND gnustep-config ${arg} OUTPUT_VARIABLE v OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(v UNIX_COMMAND "${v}")
    set(${out} "${v}" PARENT_SCOPE)
endfunction()
_gs(GS_FLAGS --objc-flags)
_gs(GS_BASE --base-libs)
_gs(GS_GUI --gui-libs)

set(GS_INC ${GS_FLAGS})
list(FILTER GS_INC INCLUDE REGEX "^-I/")
list(TRANSFORM GS_INC REPLACE "^-I" "")
list(FILTER GS_FLAGS EXCLUDE REGEX "^(-MMD|-MP|-g|-O.*|-Wall|-I.*)$")
list(FILTER GS_BASE EXCLUDE REGEX "^(-shared-libgcc|-L.*)$")
list(FILTER GS_GUI EXCLUDE REGEX "^(-shared-libgcc|-L.*)$")

# The run-time's headers come last: before clang's own they would replace its intrinsics.
execute_process(COMMAND ${CMAKE_OBJCXX_COMPILER} -print-file-name=include/objc/objc.h
    OUTPUT_VARIABLE objc_header OUTPUT_STRIP_TRAILING_WHITESPACE)
cmake_path(GET objc_header PARENT_PATH objc_dir)
cmake_path(GET objc_dir PARENT_PATH objc_dir)
file(REAL_PATH "${objc_dir}" objc_dir)
if(NOT EXISTS ${objc_dir}/objc/objc.h)
    message(FATAL_ERROR "The Objective-C run-time headers are missing: install the package gobjc")
endif()

add_library(gnustep_base INTERFACE)
target_compile_options(gnustep_base INTERFACE
    "$<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc;${GS_FLAGS}>"
    "$<$<COMPILE_LANGUAGE:OBJCXX>:SHELL:-idirafter ${objc_dir}>")
foreach(dir IN LISTS GS_INC)
    if(EXISTS ${dir})
        target_include_directories(gnustep_base SYSTEM INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:${dir}>)
    endif()
endforeach()
target_link_libraries(gnustep_base INTERFACE ${GS_BASE})
if(PDE_SANITIZE)
    target_sources(gnustep_base INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${CMAKE_SOURCE_DIR}/platform/gnustep/SanitizerDefaults.cpp>)
endif()
add_library(gnustep_gui INTERFACE)
target_link_libraries(gnustep_gui INTERFACE gnustep_base ${GS_GUI})
