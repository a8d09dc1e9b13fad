# The frameworks under the names that platform/gnustep gives their stand-ins elsewhere.
add_library(platform INTERFACE)
target_link_libraries(platform INTERFACE
    "-framework Cocoa" "-framework ApplicationServices" "-framework CoreServices" "-lcups")

find_package(pugixml REQUIRED)
add_library(pugixml_static ALIAS pugixml::pugixml)
find_path(UTFCPP_HEADERS utf8.h PATH_SUFFIXES utf8cpp REQUIRED)
include_directories(SYSTEM ${UTFCPP_HEADERS})

set(PDE_SIGN_IDENTITY "" CACHE STRING "Identity that codesign signs the plug-in with; empty: unsigned")

# bundle_for_macos(target languages): makes the module a bundle. A resource is a source of its own, so that one
# that changes is copied, and the signature is made last, over all of them.
function(bundle_for_macos target languages)
    set(resources ${CMAKE_CURRENT_SOURCE_DIR}/Resources)
    set(nib ${CMAKE_CURRENT_BINARY_DIR}/PDEMain.nib)
    add_custom_command(OUTPUT ${nib} COMMAND ibtool --errors --warnings --compile ${nib} ${resources}/PDEMain.xib
        DEPENDS ${resources}/PDEMain.xib)
    set_source_files_properties(${nib} PROPERTIES GENERATED ON MACOSX_PACKAGE_LOCATION Resources)
    target_sources(${target} PRIVATE ${nib})
    foreach(language IN LISTS languages)
        set(strings ${resources}/${language}.lproj/Localizable.strings)
        set_source_files_properties(${strings} PROPERTIES MACOSX_PACKAGE_LOCATION Resources/${language}.lproj)
        target_sources(${target} PRIVATE ${strings})
    endforeach()
    set_target_properties(${target} PROPERTIES
        BUNDLE ON BUNDLE_EXTENSION plugin MACOSX_BUNDLE_INFO_PLIST ${resources}/Info.plist)
    if(PDE_SIGN_IDENTITY)
        add_custom_target(${target}_signed ALL
            COMMAND codesign --force --timestamp --sign ${PDE_SIGN_IDENTITY} $<TARGET_BUNDLE_DIR:${target}>)
        add_dependencies(${target}_signed ${target})
    endif()
endfunction()
