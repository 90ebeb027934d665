# ovra_abi(<variable>): the compiler's rules for the layout of classes and the names of symbols: "itanium-linux",
# "gcc-mingw" or "msvc". All modules of a process need the same.

include_guard(GLOBAL)

function(ovra_abi variable)
    if(NOT WIN32)
        string(TOLOWER "itanium-${CMAKE_SYSTEM_NAME}" abi)
    elseif(MINGW)
        set(abi "gcc-mingw")
    else()
        set(abi "msvc")
    endif()
    set(${variable} "${abi}" PARENT_SCOPE)
endfunction()
