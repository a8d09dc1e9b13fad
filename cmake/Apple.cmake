# The frameworks under the names that platform/gnustep gives their stand-ins elsewhere.
add_library(platform INTERFACE)
target_link_libraries(platform INTERFACE
    "-framework Cocoa" "-framework ApplicationServices" "-framework CoreServices" "-lcups")
find_library(PUGIXML_ARCHIVE libpugixml.a REQUIRED)
add_library(pugixml_static STATIC IMPORTED)
set_target_properties(pugixml_static PROPERTIES IMPORTED_LOCATION ${PUGIXML_ARCHIVE})
