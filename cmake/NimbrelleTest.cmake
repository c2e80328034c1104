# nimbrelle_test(NAME frame SOURCES ... [LIBRARIES ...] [LABELS ...])
# One program for each room, one entry in ctest; tests/support/main.cpp holds its main().
function(nimbrelle_test)
    cmake_parse_arguments(arg "" "NAME" "SOURCES;LIBRARIES;LABELS" ${ARGN})
    add_executable(${arg_NAME}_tests ${arg_SOURCES})
    if(NIMBRELLE_SANITIZE MATCHES "thread")
        target_sources(${arg_NAME}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/PlainClone.cpp")
        set_source_files_properties("${CMAKE_SOURCE_DIR}/tests/support/PlainClone.cpp" PROPERTIES
            SKIP_PRECOMPILE_HEADERS ON)
    endif()
    target_link_libraries(${arg_NAME}_tests PRIVATE nimbrelle_core nimbrelle_test_support ${arg_LIBRARIES})
    target_precompile_headers(${arg_NAME}_tests REUSE_FROM nimbrelle_test_support)
    set_property(TARGET ${arg_NAME}_tests PROPERTY AUTOMOC OFF) # no test has signals of its own
    add_test(NAME ${arg_NAME} COMMAND ${arg_NAME}_tests)
    set_tests_properties(${arg_NAME} PROPERTIES
        LABELS "${arg_LABELS}" TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=Asia/Shanghai;LC_ALL=C.UTF-8;${NIMBRELLE_RUN_ENVIRONMENT}")
endfunction()

# nimbrelle_view_test(NAME ... SOURCES ... [LIBRARIES ...] [LABELS ...])
# The same with the views, on a screen that is not there.
function(nimbrelle_view_test)
    cmake_parse_arguments(arg "" "NAME" "SOURCES;LIBRARIES;LABELS" ${ARGN})
    nimbrelle_test(NAME ${arg_NAME} SOURCES ${arg_SOURCES} "${CMAKE_SOURCE_DIR}/tests/support/ViewMain.cpp"
        LIBRARIES nimbrelle_desktop ${arg_LIBRARIES} LABELS ${arg_LABELS})
    set_property(TEST ${arg_NAME} APPEND PROPERTY ENVIRONMENT
        "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/leak-suppressions.txt:print_suppressions=0")
endfunction()

# nimbrelle_session_test(NAME ... [SESSION x | sway] SOURCES ... LIBRARIES ...)
# The same in a private session, of X with a window manager or of sway, with a session bus, one at a time, with
# the programs as they are shipped. Belongs to the end-to-end stage.
function(nimbrelle_session_test)
    cmake_parse_arguments(arg "" "NAME;SESSION" "SOURCES;LIBRARIES" ${ARGN})
    if(NOT arg_SESSION)
        set(arg_SESSION x)
    endif()
    add_executable(${arg_NAME}_tests ${arg_SOURCES})
    target_compile_options(${arg_NAME}_tests PRIVATE -Werror) # what is built for tests alone is held to it
    target_link_libraries(${arg_NAME}_tests PRIVATE nimbrelle_test_support ${arg_LIBRARIES})
    target_precompile_headers(${arg_NAME}_tests REUSE_FROM nimbrelle_test_support)
    add_test(NAME ${arg_NAME}
        COMMAND "${CMAKE_SOURCE_DIR}/tests/support/${arg_SESSION}-session" $<TARGET_FILE:${arg_NAME}_tests>)
    set_tests_properties(${arg_NAME} PROPERTIES
        LABELS end-to-end TIMEOUT 600 SKIP_RETURN_CODE 77 RUN_SERIAL ON)
    set_property(GLOBAL APPEND PROPERTY NIMBRELLE_SESSION_TESTS ${arg_NAME}_tests)
endfunction()
