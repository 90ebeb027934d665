# GoogleTest, ovra_test(), and Wine for the cross build.

include_guard(GLOBAL)
include(GoogleTest)

# Built from source with this tree's own flags: a prebuilt library fits neither the cross compiler nor the sanitizers.
set(OVRA_GOOGLETEST_DIR "/usr/src/googletest" CACHE PATH "GoogleTest's source tree")
if(NOT EXISTS "${OVRA_GOOGLETEST_DIR}/CMakeLists.txt")
    message(FATAL_ERROR "No GoogleTest sources in ${OVRA_GOOGLETEST_DIR} "
        "(run scripts/setup, set OVRA_GOOGLETEST_DIR, or configure with -DOVRA_BUILD_TESTS=OFF)")
endif()
set(INSTALL_GTEST OFF CACHE INTERNAL "")
set(gtest_force_shared_crt ON CACHE INTERNAL "")
add_subdirectory("${OVRA_GOOGLETEST_DIR}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
if(NOT MSVC) # as the tests themselves, below
    target_compile_options(gtest PRIVATE -O0)
    target_compile_options(gmock PRIVATE -O0)
endif()

set(OVRA_RUNS_IN_WINE OFF)
if(CMAKE_CROSSCOMPILING AND WIN32)
    set(OVRA_RUNS_IN_WINE ON)
    set(wine_run "${PROJECT_SOURCE_DIR}/cmake/wine-run" --prefix "${PROJECT_BINARY_DIR}/wine")
    set(CMAKE_CROSSCOMPILING_EMULATOR ${wine_run} --path "${OVRA_STAGE_DIR}/bin")

    # Wine's server and services start once before the tests and end after them. If each test started its own, the tests
    # would take ten times as long, and would race to create the prefix.
    add_test(NAME wine.start COMMAND ${wine_run} --start)
    add_test(NAME wine.stop COMMAND ${wine_run} --stop)
    set_tests_properties(wine.start PROPERTIES FIXTURES_SETUP wine TIMEOUT 120)
    set_tests_properties(wine.stop PROPERTIES FIXTURES_CLEANUP wine TIMEOUT 60)
endif()

# ovra_test(<target>
#     SOURCES <file>...
#     [LINK <target>...]
#     [DEFINITIONS <definition>...]
#     [OPENS <module>...])          built first: the tests open them at run time
#
# A GoogleTest program in tests/. Each test case is a ctest, named <target>.<suite>.<case>.
function(ovra_test target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK;DEFINITIONS;OPENS")
    _ovra_check_arguments(ovra_test ${target} "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")

    add_executable(${target} ${arg_SOURCES})
    target_compile_definitions(${target} PRIVATE ${arg_DEFINITIONS})
    if(NOT MSVC)
        # The compiler's time counts: tests wait for most of theirs. What they test is optimised, but for the sanitizers.
        target_compile_options(${target} PRIVATE -O0)
    endif()
    target_link_libraries(${target} PRIVATE ovra-options ${arg_LINK} gmock_main)
    _ovra_opens(${target} "${arg_OPENS}")

    set(folder "${PROJECT_BINARY_DIR}/tests")
    if(WIN32 AND NOT OVRA_RUNS_IN_WINE)
        set(folder "${OVRA_STAGE_DIR}/bin") # Windows searches the program's folder for DLLs
    endif()
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${folder}")

    # Generous: reaching it means that a test hangs, not that the machine is busy.
    set(properties TIMEOUT 900)
    if(OVRA_RUNS_IN_WINE)
        list(APPEND properties FIXTURES_REQUIRED wine)
    endif()
    gtest_discover_tests(${target}
        TEST_PREFIX "${target}."
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES ${properties})
endfunction()
