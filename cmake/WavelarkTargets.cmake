# How every target of the project is made: one place for warnings, definitions and include root.

include(GNUInstallDirs)

function(wavelark_compile_options target)
    target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Woverloaded-virtual
        -Wnon-virtual-dtor -Werror
        $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>) # Qt's logging
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH QT_STRICT_ITERATORS
        QT_DISABLE_DEPRECATED_BEFORE=0x050F00
        $<$<NOT:$<CONFIG:Debug>>:QT_MESSAGELOGCONTEXT>)
    if(WAVELARK_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${WAVELARK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(${target} PUBLIC -fsanitize=${WAVELARK_SANITIZE})
    endif()
    if(WAVELARK_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTORCC ON)
endfunction()

# wavelark_library(NAME floor SOURCES ... LINK ... [PRIVATE_LINK ...]): one static library per folder
# under src/.
function(wavelark_library)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(wl_${ARG_NAME} STATIC ${ARG_SOURCES})
    wavelark_compile_options(wl_${ARG_NAME})
    target_include_directories(wl_${ARG_NAME} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(wl_${ARG_NAME} PUBLIC ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
endfunction()

# wavelark_test(NAME folder SOURCES ... LINK ... [BATCHES n]): one GoogleTest binary per folder; each
# of its tests is a ctest case of its own. Under Wine, where starting a program costs more than most
# tests, they are run in so many batches instead.
function(wavelark_test)
    cmake_parse_arguments(ARG "" "NAME;BATCHES" "SOURCES;LINK" ${ARGN})
    add_executable(test_${ARG_NAME} ${ARG_SOURCES})
    wavelark_compile_options(test_${ARG_NAME})
    target_include_directories(test_${ARG_NAME} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(test_${ARG_NAME} PRIVATE ${ARG_LINK} wl_test_support GTest::gmock)
    set(environment QT_QPA_PLATFORM=offscreen SDL_AUDIODRIVER=dummy)
    if(NOT CMAKE_CROSSCOMPILING)
        gtest_discover_tests(test_${ARG_NAME}
            DISCOVERY_MODE PRE_TEST
            DISCOVERY_TIMEOUT 60
            PROPERTIES TIMEOUT 180 LABELS "${ARG_NAME}" ENVIRONMENT "${environment}")
        return()
    endif()
    if(NOT ARG_BATCHES)
        set(ARG_BATCHES 1)
    endif()
    foreach(batch RANGE 1 ${ARG_BATCHES})
        add_test(NAME ${ARG_NAME}.${batch} COMMAND test_${ARG_NAME})
        math(EXPR index "${batch}-1")
        set_tests_properties(${ARG_NAME}.${batch} PROPERTIES TIMEOUT 600 LABELS "${ARG_NAME}"
            ENVIRONMENT "${environment};GTEST_TOTAL_SHARDS=${ARG_BATCHES};GTEST_SHARD_INDEX=${index}")
    endforeach()
endfunction()
