# Flags of our own code only: imported targets bring theirs as SYSTEM includes.
add_library(pde_settings INTERFACE)
target_compile_options(pde_settings INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion -Werror
    # The toolkit and the dialog dictate the parameters of actions and protocol methods.
    $<$<COMPILE_LANGUAGE:OBJCXX>:-Wno-unused-parameter>
    # The PPD calls of libcups are deprecated as a whole and have no successor for drivers.
    -Wno-deprecated-declarations)
target_include_directories(pde_settings INTERFACE ${CMAKE_SOURCE_DIR}/PDE_COL/Source)
if(PDE_SANITIZE)
    # With what guides the fuzz targets, so that they and the tests share one build.
    add_compile_options(-fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=address,undefined)
elseif(NOT APPLE)
    add_compile_options($<$<CONFIG:Release,RelWithDebInfo>:-D_FORTIFY_SOURCE=2> -fstack-protector-strong)
    add_link_options(-Wl,-z,relro,-z,now)
endif()
