find_package(Cups REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(NETSNMP REQUIRED IMPORTED_TARGET netsnmp)
pkg_check_modules(AVAHI REQUIRED IMPORTED_TARGET avahi-client)

# Linked in whole, so that the setuid helper depends on nothing but the C and C++ libraries.
find_library(PUGIXML_ARCHIVE libpugixml.a REQUIRED)
add_library(pugixml_static STATIC IMPORTED)
set_target_properties(pugixml_static PROPERTIES
    IMPORTED_LOCATION ${PUGIXML_ARCHIVE} INTERFACE_LINK_LIBRARIES m)
