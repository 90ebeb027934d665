# ovra_abi(<variable>): the compiler's rules for the layout of classes and the names of symbols: "itanium-linux",
# "gcc-mingw" or "msvc", followed by "-libc++" if the standard library is LLVM's. All modules of a process need the same.
# gui-core/Export.h and Version.h have the same rule for the preprocessor.

include_guard(GLOBAL)
include(CheckCXXSymbolExists)

function(ovra_abi variable)
    if(NOT WIN32)
        string(TOLOWER "itanium-${CMAKE_SYSTEM_NAME}" abi)
    elseif(MINGW)
        set(abi "gcc-mingw")
    else()
        set(abi "msvc")
    endif()
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang") # which other compilers do not come with
        set(CMAKE_REQUIRED_QUIET ON)
        check_cxx_symbol_exists(_LIBCPP_VERSION string OVRA_STANDARD_LIBRARY_IS_LIBCXX)
        if(OVRA_STANDARD_LIBRARY_IS_LIBCXX)
            string(APPEND abi "-libc++")
        endif()
    endif()
    set(${variable} "${abi}" PARENT_SCOPE)
endfunction()
