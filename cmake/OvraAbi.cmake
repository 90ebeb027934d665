# ovra_abi(<variable>): by which rules the compiler lays out classes and names symbols. Modules of one process have to
# agree on it: "itanium-linux", "gcc-mingw" or "msvc".

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
