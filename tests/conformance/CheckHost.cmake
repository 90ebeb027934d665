cmake_minimum_required(VERSION 3.25)

# cmake -D PROGRAM=... -D REPORT=... -D CAUGHT_BY=... -D "MAY_FOLLOW=..." -P CheckHost.cmake
#
# Runs all conformance tests on the host that PROGRAM loads: each of CAUGHT_BY must fail, those of MAY_FOLLOW may fail or be
# skipped, and all others must pass.

if(PROBLEM)
    message(FATAL_ERROR "${PROBLEM}")
endif()
execute_process(
    COMMAND "${PROGRAM}" --jobs 8 --time-limit 30 --json "${REPORT}"
    RESULT_VARIABLE code OUTPUT_VARIABLE text ERROR_VARIABLE text)
message("${text}")
if(NOT code EQUAL 1)
    message(FATAL_ERROR "Expected exit code 1, found ${code}")
endif()

file(READ "${REPORT}" report)
string(JSON count LENGTH "${report}" tests)
math(EXPR last "${count} - 1")
set(missed ${CAUGHT_BY})
foreach(index RANGE ${last})
    string(JSON name GET "${report}" tests ${index} name)
    string(JSON result GET "${report}" tests ${index} result)
    if(result MATCHES "^(failed|crashed|slow)$")
        list(REMOVE_ITEM missed ${name})
    endif()
    if(NOT result STREQUAL "passed" AND NOT name IN_LIST CAUGHT_BY AND NOT name IN_LIST MAY_FOLLOW)
        message(SEND_ERROR "Not meant for this fault, but ${result}: ${name}")
    endif()
endforeach()
if(missed)
    message(SEND_ERROR "Did not catch the fault: ${missed}")
endif()
