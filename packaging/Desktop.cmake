# What a desktop and its users look for beside the programs: menu entry, icon, description, completion, manual.
configure_file(desktop/vendor.quorvex.r4270.metainfo.xml.in vendor.quorvex.r4270.metainfo.xml @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vendor.quorvex.r4270.metainfo.xml
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES desktop/r4270-printdialog.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES profilectl.bash-completion DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
    RENAME profilectl)

set(icon ${CMAKE_CURRENT_SOURCE_DIR}/desktop/r4270-printdialog.svg)
install(FILES ${icon} DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
find_program(RSVG_CONVERT rsvg-convert)
if(RSVG_CONVERT)
    foreach(size 16 22 24 32 48 64 128 256)
        set(png ${CMAKE_CURRENT_BINARY_DIR}/icons/${size}/r4270-printdialog.png)
        add_custom_command(OUTPUT ${png} DEPENDS ${icon}
            COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${png} ${icon})
        list(APPEND made ${png})
        install(FILES ${png} DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps")
    endforeach()
endif()

# A program's own --help is the source of its manual page.
find_program(HELP2MAN help2man)
function(manual target section about)
    if(NOT HELP2MAN)
        return()
    endif()
    set(page ${CMAKE_CURRENT_BINARY_DIR}/${target}.${section})
    add_custom_command(OUTPUT ${page}.gz DEPENDS ${target} see-also.h2m
        COMMAND ${CMAKE_COMMAND} -E env "PATH=$<TARGET_FILE_DIR:${target}>:$ENV{PATH}"
            ${HELP2MAN} --no-info --section=${section} --name=${about} --output=${page}
            --include=${CMAKE_CURRENT_SOURCE_DIR}/see-also.h2m ${target}
        COMMAND gzip -9nf ${page} VERBATIM)
    set(made ${made} ${page}.gz PARENT_SCOPE)
    install(FILES ${page}.gz DESTINATION "${CMAKE_INSTALL_MANDIR}/man${section}" ${ARGN})
endfunction()
manual(printdialog 1 "print dialog with the colour options of the R4270")
manual(profilectl 1 "manage the colour profile lists of the R4270")
manual(R4270Helper 8 "privileged helper of the R4270 driver")
manual(R4270Walker 8 "read the colour profiles that are on an R4270")
manual(r4270-printer 1 "simulated R4270 printer" COMPONENT simulator)
add_custom_target(desktop ALL DEPENDS ${made})
