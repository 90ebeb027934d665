# Compares the tables of virtual functions that the compiler laid out (GCC's -fdump-lang-class, Clang's
# -fdump-vtable-layouts) with the committed ones, which hold for every compiler.
#
#   cmake -D DUMP=<the compiler's output> -D EXPECTED=<file> -P check_table.cmake

file(READ "${DUMP}" dump)
file(READ "${EXPECTED}" expected)
string(REGEX MATCHALL "(^|\n)ovra::[A-Za-z:]+" classes "${expected}")
set(tables "")
foreach(class IN LISTS classes)
    string(STRIP "${class}" class)
    string(REGEX MATCH "\n(Vtable for ${class}|VFTable for [^\n]*'${class}' \\([0-9]+ entries\\)\\.)\n" heading "\n${dump}")
    if(NOT heading)
        message(FATAL_ERROR "The compiler has laid out no table of virtual functions for ${class}")
    endif()
    string(FIND "\n${dump}" "${heading}" begin)
    string(LENGTH "${heading}" length)
    math(EXPR begin "${begin} + ${length} - 1")
    string(SUBSTRING "${dump}" ${begin} -1 table)
    string(FIND "${table}" "\n\n" end)
    string(SUBSTRING "${table}" 0 ${end} table)
    string(REGEX MATCHALL "::~?[A-Za-z0-9_]+(\n|\\(|$)" functions "${table}")
    list(TRANSFORM functions REPLACE "^::|\n$|\\($" "")
    list(TRANSFORM functions REPLACE "^~.*" "the destructor")
    string(REGEX REPLACE "(the destructor);the destructor" "\\1" functions "${functions}") # one that deletes, one that does not
    set(each "${functions}")
    list(REMOVE_DUPLICATES each)
    if(NOT each STREQUAL functions)
        message(FATAL_ERROR "${class} has virtual functions of one name: compilers do not agree on their order. "
            "It has ${functions}")
    endif()
    list(JOIN functions "\n  " functions)
    string(APPEND tables "${class}\n  ${functions}\n")
endforeach()

if(NOT tables STREQUAL expected)
    message(FATAL_ERROR "A table of virtual functions has changed; what was built before would call the wrong operations. "
        "The tables are now:\n${tables}\nIf it is meant to be so, put this into ${EXPECTED}")
endif()
