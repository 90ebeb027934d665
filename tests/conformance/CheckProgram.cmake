# cmake -D "PROGRAM=<words>" -P CheckProgram.cmake
#
# Runs the program with a test for each result, and compares results and exit codes.

cmake_minimum_required(VERSION 3.25)

# run(<exit code> <expected results or regular expression of a refusal> <argument>...)
function(run expected_code expected)
    execute_process(COMMAND ${PROGRAM} ${ARGN} INPUT_FILE "${CMAKE_CURRENT_LIST_FILE}" RESULT_VARIABLE code OUTPUT_VARIABLE text ERROR_VARIABLE refusal)
    string(REGEX MATCHALL "\n(passed|failed|crashed|skipped|slow) +[a-z-]+" found "${text}")
    list(TRANSFORM found REPLACE "[\n ]+(.*[^ ]) +" "\\1 ")
    if(code EQUAL 2)
        set(found "${text}${refusal}") # it comes before the first test
    endif()
    if(NOT code EQUAL expected_code OR NOT found MATCHES "^${expected}\r?\n?$")
        message(SEND_ERROR "${ARGN}: expected ${expected_code} and\n${expected}\nfound ${code} and\n${found}\n${text}")
    endif()
endfunction()

file(REMOVE report.json)
run(1 "passed passes;failed finds-another-value;failed throws;failed fails-elsewhere;crashed aborts;skipped is-not-offered;slow never-ends"
    --jobs 7 --time-limit 5 --json report.json)
run(1 "failed finds-another-value;failed throws;crashed aborts"
    --only-failed report.json --exclude never-ends --exclude *elsewhere)
run(0 "passed passes;skipped is-not-offered" --include p* --include is-*-offered)
run(0 "" --list --include never-ends)
run(0 "" --help)
run(2 "no test has the name \"nobody\"" --include nobody)
run(2 "--jobs: expected a number from 1 to 256, found \"0\"" --jobs 0)
run(2 "--time-limit: expected a number from 1 to 86400, found \"soon\"" --time-limit soon)
run(2 "--json: a value is missing" --json)
run(2 "no-such-folder/report.json: cannot be written" --include passes --json no-such-folder/report.json)
run(2 "the arguments choose no test" --exclude *)
run(2 "unknown argument \"--jsn\" .*" --jsn)
run(2 "no-such-file: is no report of this program: .*" --only-failed no-such-file)
run(2 "[.]: is no report of this program: .*" --only-failed .)
run(0 "passed passes" --include passes --json passed.json)
run(0 "" --only-failed passed.json)
set(ENV{OVRA_TEST_NAMED_TWICE} 1)
run(2 "two tests have the name \"passes\"" --include passes)
unset(ENV{OVRA_TEST_NAMED_TWICE})
execute_process(COMMAND ${PROGRAM} --include passes --json "" RESULT_VARIABLE code OUTPUT_QUIET ERROR_QUIET)
if(NOT code EQUAL 2) # not with run(), because a list loses empty arguments
    message(SEND_ERROR "An empty name of a report: found ${code}")
endif()

file(READ report.json report)
string(JSON host GET "${report}" host)
if(NOT host STREQUAL "\"bare\"\n\\host")
    message(SEND_ERROR "Name of the host in the report: ${host}")
endif()
foreach(row
        "1|One is two.*ä is Latin-1.*number: expected 2, found 1"
        "2|Nothing is thrown.*unexpected exception: no cable"
        "3|said by another thread"
        "4|The process goes on.*(signal 6|exit code [0-9-]+)"
        "5|The host does not offer a channel"
        "6|There is an end.*begun")
    string(REGEX MATCH "^([0-9])\\|(.*)$" row "${row}")
    string(JSON message GET "${report}" tests ${CMAKE_MATCH_1} message)
    if(NOT message MATCHES "${CMAKE_MATCH_2}")
        message(SEND_ERROR "Test ${CMAKE_MATCH_1}: ${message}")
    endif()
endforeach()
