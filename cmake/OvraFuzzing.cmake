# ovra_fuzzer(), for a build with Clang and its fuzzer (preset linux-fuzz).

include_guard(GLOBAL)

if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "Fuzzers need Clang: use the preset linux-fuzz")
endif()
set(OVRA_FUZZ_SECONDS "" CACHE STRING "For how long a test runs its fuzzer; empty: as each says itself")

add_custom_target(fuzzers)

# ovra_fuzzer(<target>
#     SOURCES <file>...             one has LLVMFuzzerTestOneInput; the sources under test belong here, too
#     SEEDS <folder>                initial inputs, in files named for their content; the fuzzer writes nothing there
#     [LINK <target>...]
#     [DEFINITIONS <definition>...]
#     [MAX_LENGTH <bytes>]          of an input; default 4096
#     [SECONDS <number>])           duration of the test; default 10
#
# A fuzzer, and a ctest with its name. The fuzzer keeps useful inputs in <target>-corpus of the build folder and also
# starts from them the next time. The input of a failure is written beside that folder.
function(ovra_fuzzer target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SEEDS;MAX_LENGTH;SECONDS" "SOURCES;LINK;DEFINITIONS")
    _ovra_check_arguments(ovra_fuzzer ${target} "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")
    if(NOT arg_MAX_LENGTH)
        set(arg_MAX_LENGTH 4096)
    endif()
    if(OVRA_FUZZ_SECONDS)
        set(arg_SECONDS ${OVRA_FUZZ_SECONDS})
    elseif(NOT arg_SECONDS)
        set(arg_SECONDS 10)
    endif()

    add_executable(${target} EXCLUDE_FROM_ALL ${arg_SOURCES})
    target_compile_definitions(${target} PRIVATE ${arg_DEFINITIONS})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE ovra-options ${arg_LINK})
    # The preset instruments the whole build; this only adds the fuzzer's main().
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    add_dependencies(fuzzers ${target})

    set(found "${CMAKE_CURRENT_BINARY_DIR}/${target}-corpus")
    file(MAKE_DIRECTORY "${found}")
    add_test(NAME ${target} COMMAND ${target}
        -max_total_time=${arg_SECONDS} -max_len=${arg_MAX_LENGTH} -timeout=10 -use_value_profile=1
        -print_final_stats=1 -verbosity=0
        -artifact_prefix=${CMAKE_CURRENT_BINARY_DIR}/${target}-
        "${found}" "${CMAKE_CURRENT_SOURCE_DIR}/${arg_SEEDS}")
    math(EXPR timeout "${arg_SECONDS} + 120")
    set_tests_properties(${target} PROPERTIES TIMEOUT ${timeout})
endfunction()
