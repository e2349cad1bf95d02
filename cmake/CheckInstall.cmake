# Installs the built program into a folder of its own and starts it there: it must find its module
# and its languages where the install rules put them. -DBUILD= -DWORK= -DPROGRAM=
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/usr
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(MAKE_DIRECTORY ${WORK}/data)

foreach(path bin/wavelark lib/wavelark/wavelark_ffmpeg.so share/applications/wavelark.desktop
        share/icons/hicolor/scalable/apps/wavelark.svg share/wavelark/Languages/German.lng)
    if(NOT EXISTS ${WORK}/usr/${path})
        message(FATAL_ERROR "not installed: ${path}")
    endif()
endforeach()

# nothing listens at port 1: it says so and ends
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env WAVELARK_DATA=${WORK}/data QT_QPA_PLATFORM=offscreen
            SDL_AUDIODRIVER=dummy LSAN_OPTIONS=suppressions=${ROOT}/tools/lsan.supp
            ${WORK}/usr/bin/wavelark /lang=german /url=http://127.0.0.1:1/ /duration=1 /end_action=1
    TIMEOUT 60 RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE said)
file(READ ${WORK}/data/Wavelark.log log)
foreach(expected "module=[^ ]*lib/wavelark/wavelark_ffmpeg" "share/wavelark/Languages/German.lng")
    if(NOT log MATCHES ${expected})
        message(FATAL_ERROR "the log lacks ${expected}:\n${log}\n${said}")
    endif()
endforeach()
if(NOT result EQUAL 0)
    message(FATAL_ERROR "it ended with ${result}:\n${said}")
endif()
file(REMOVE_RECURSE ${WORK})
