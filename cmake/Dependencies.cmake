find_package(Cups REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(NETSNMP REQUIRED IMPORTED_TARGET netsnmp)
pkg_check_modules(AVAHI REQUIRED IMPORTED_TARGET avahi-client)

# Linked in whole, so that the setuid helper depends on nothing but the C and C++ libraries.
find_library(PUGIXML_ARCHIVE libpugixml.a REQUIRED)
add_library(pugixml_static STATIC IMPORTED)
# It takes one function from the mathematical library: loading all of that costs the helper a twentieth of its start.
# (The sanitisers need all of it.)
if(PDE_SANITIZE)
    set(MATH_ARCHIVE m)
else()
    find_library(MATH_ARCHIVE libm.a REQUIRED)
endif()
set_target_properties(pugixml_static PROPERTIES
    IMPORTED_LOCATION ${PUGIXML_ARCHIVE} INTERFACE_LINK_LIBRARIES ${MATH_ARCHIVE})
