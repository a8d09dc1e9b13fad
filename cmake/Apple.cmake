# The frameworks under the names that platform/gnustep gives their stand-ins elsewhere.
add_library(platform INTERFACE)
target_link_libraries(platform INTERFACE
    "-framework Cocoa" "-framework ApplicationServices" "-framework CoreServices" "-lcups")

find_package(pugixml REQUIRED)
add_library(pugixml_static ALIAS pugixml::pugixml)
find_path(UTFCPP_HEADERS utf8.h PATH_SUFFIXES utf8cpp REQUIRED)
include_directories(SYSTEM ${UTFCPP_HEADERS})
