# Debian packages, by cpack: the driver, and the simulated printer in one of its own.
set(debian ${CMAKE_CURRENT_BINARY_DIR}/debian)
foreach(file changelog postinst)
    configure_file(debian/${file}.in ${debian}/${file} @ONLY)
endforeach()
configure_file(debian/postrm ${debian}/postrm COPYONLY)
file(CHMOD ${debian}/postinst ${debian}/postrm PERMISSIONS ${FOLDER_MODE})
execute_process(COMMAND gzip -9nc ${debian}/changelog OUTPUT_FILE ${debian}/changelog.Debian.gz
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND gzip -9nc ${CMAKE_SOURCE_DIR}/CHANGELOG.md OUTPUT_FILE ${debian}/changelog.gz
    COMMAND_ERROR_IS_FATAL ANY)
foreach(component driver simulator)
    install(FILES debian/copyright ${debian}/changelog.Debian.gz ${debian}/changelog.gz
        DESTINATION share/doc/r4270-${component} COMPONENT ${component})
endforeach()
install(FILES debian/lintian-overrides DESTINATION share/lintian/overrides RENAME r4270-driver)

set(CPACK_GENERATOR DEB)
set(CPACK_SET_DESTDIR ON) # the driver's own paths are absolute
set(CPACK_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME r4270)
set(CPACK_PACKAGE_CONTACT "R4270 driver developers <r4270@quorvex.example>")
set(CPACK_COMPONENTS_ALL driver simulator)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/platform/gnustep)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_DRIVER_PACKAGE_NAME r4270-driver)
set(CPACK_COMPONENT_DRIVER_DESCRIPTION "print dialog and colour options for the laser printer R4270
The print dialog extension of the colour laser printer R4270 with a print
dialog that loads it, the printer's description for CUPS, and profilectl,
which manages the lists of colour profiles from scripts.")
set(CPACK_DEBIAN_DRIVER_PACKAGE_CONTROL_EXTRA ${debian}/postinst ${debian}/postrm)
set(CPACK_DEBIAN_DRIVER_PACKAGE_DEPENDS adduser)
set(CPACK_DEBIAN_DRIVER_PACKAGE_RECOMMENDS "avahi-daemon, cups, fonts-dejavu-core, fonts-noto-cjk")
set(CPACK_DEBIAN_DRIVER_PACKAGE_SUGGESTS r4270-simulator)

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME r4270-simulator)
set(CPACK_COMPONENT_SIMULATOR_DESCRIPTION "simulated laser printer R4270
A program that answers SNMP as the colour laser printer R4270 does, with a
table of colour profiles from a text file, for trying and testing the driver.")
include(CPack)
