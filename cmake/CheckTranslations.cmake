# Fails where a language lacks a text of the program, or translates one that is not there any more.
# Run as: cmake -DROOT=<checkout> -DLUPDATE=<program> -DWORK=<folder> -P cmake/CheckTranslations.cmake
# The languages themselves are brought up to date with tools/update-languages.sh.
set(faults 0)
macro(fault text)
    message(SEND_ERROR "${text}")
    math(EXPR faults "${faults}+1")
endmacro()

# lupdate works on copies, so that the check changes nothing.
function(updated_copy source result)
    file(COPY ${ROOT}/languages/${source} DESTINATION ${WORK})
    set(options)
    if(source MATCHES "_en[.]ts$")
        set(options -pluralonly)
    endif()
    execute_process(
        COMMAND ${LUPDATE} -silent -locations none ${options} ${ROOT}/src -ts ${WORK}/${source}
        RESULT_VARIABLE code OUTPUT_VARIABLE said ERROR_VARIABLE said)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "lupdate failed with ${code}: ${said}")
    endif()
    set(${result} "${said}" PARENT_SCOPE)
endfunction()

# Texts without a finished translation, and translations without a text.
macro(check_language source)
    updated_copy(${source} said)
    # It does not know digit separators and leaves the rest of such a line out.
    string(REGEX REPLACE "[^\n]*Unterminated C[+][+] character\n?" "" said "${said}")
    if(said)
        fault("${source}: texts that lupdate does not understand:\n${said}")
    endif()
    file(READ ${WORK}/${source} whole)
    # a list's own characters would tear the lines apart
    string(REGEX REPLACE "[][;\\]" "_" whole "${whole}")
    string(REPLACE "</message>" ";" messages "${whole}")
    set(texts 0)
    foreach(message IN LISTS messages)
        if(message MATCHES "<source>(.*)</source>")
            set(text "${CMAKE_MATCH_1}")
            math(EXPR texts "${texts}+1")
            if(message MATCHES "type=\"unfinished\"")
                fault("${source}: not translated: ${text}")
            elseif(message MATCHES "type=\"(vanished|obsolete)\"")
                fault("${source}: not in the program any more: ${text}")
            elseif(message MATCHES "<(translation|numerusform)></|<translation/>")
                fault("${source}: translated by nothing: ${text}")
            endif()
        endif()
    endforeach()
    message(STATUS "${source}: ${texts} texts")
    set(texts_${source} ${texts})
endmacro()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
check_language(wavelark_de.ts)
check_language(wavelark_en.ts)
if(texts_wavelark_de.ts LESS 100 OR texts_wavelark_en.ts LESS 1)
    fault("lupdate finds hardly any texts: it does not read the sources")
endif()

# A text that goes to translate() as a variable has to be marked where it stands, or lupdate never
# sees it and it silently stays English.
file(GLOB_RECURSE files ${ROOT}/src/*.cpp ${ROOT}/src/*.h)
foreach(file IN LISTS files)
    file(READ ${file} code)
    if(code MATCHES "translate\\([ \n]*\"[A-Za-z:]+\",[ \n]*[a-zA-Z]" AND
       NOT code MATCHES "QT_TRANSLATE_NOOP")
        fault("${file}: hands unmarked texts to translate()")
    endif()
    if(code MATCHES "QString tr\\(const char")
        fault("${file}: has a tr() of its own, whose texts lupdate files under another name")
    endif()
endforeach()
if(faults GREATER 0)
    message(FATAL_ERROR "${faults} faults; tools/update-languages.sh takes new texts over")
endif()
