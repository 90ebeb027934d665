# Compares the table of virtual functions that the compiler laid out with the committed one.
#
#   cmake -D DUMP=<class dump> -D EXPECTED=<file> -P check_table.cmake

file(READ "${DUMP}" dump)
string(FIND "${dump}" "\nVtable for ovra::tests::CompleteViews\n" begin)
string(SUBSTRING "${dump}" ${begin} -1 dump)
string(FIND "${dump}" "\nClass " end)
string(SUBSTRING "${dump}" 0 ${end} dump)
string(REGEX MATCHALL "ovra::[A-Za-z0-9_:]+::[A-Za-z0-9_]+\n" entries "${dump}")
list(JOIN entries "" table)
string(REGEX REPLACE "ovra::[A-Za-z0-9_:]+::" "" table "${table}")
string(REGEX REPLACE "^CompleteViews\n" "" table "${table}") # the heading

file(READ "${EXPECTED}" expected)
if(NOT table STREQUAL expected)
    message(FATAL_ERROR "The table of virtual functions of Views has changed; front ends in the field would call the "
        "wrong operations. It is now:\n${table}\nIf it is meant to be so, put this into ${EXPECTED}")
endif()
