# Compares the tables of virtual functions that the compiler laid out (GCC's -fdump-lang-class, Clang's
# -fdump-vtable-layouts) with the committed ones, which hold for every compiler and have to cover every exported class.
#
#   cmake -D DUMP=<the compiler's output> -D EXPECTED=<file> -D HEADERS=<folder of the exported headers> -P check_table.cmake

file(READ "${DUMP}" dump)
file(READ "${EXPECTED}" expected)
string(REGEX MATCHALL "(^|\n)ovra::[A-Za-z:]+" classes "${expected}")
file(GLOB headers "${HEADERS}/*.h")
set(exported 0)
foreach(header IN LISTS headers)
    file(STRINGS "${header}" heads REGEX "^class OVRA_GUI_CORE_API ")
    foreach(head IN LISTS heads)
        string(REGEX REPLACE "^class OVRA_GUI_CORE_API ([A-Za-z]+).*" "\\1" class "${head}")
        if(NOT classes MATCHES "::(Complete)?${class}(;|$)") # a complete implementation stands for Views
            message(FATAL_ERROR "The table of ${class} is missing in ${EXPECTED}; add it to VirtualFunctions.cpp, too")
        endif()
        math(EXPR exported "${exported} + 1")
    endforeach()
endforeach()
if(exported EQUAL 0)
    message(FATAL_ERROR "No exported class in ${HEADERS}")
endif()

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
