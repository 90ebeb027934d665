# Windows x64 under Microsoft's C++ ABI, from Linux: clang-cl and lld-link, libc++, and mingw-w64's C and system
# headers. cmake/microsoft-abi/prepare makes what Debian's packages lack.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(llvm 19)
set(CMAKE_C_COMPILER clang-cl-${llvm})
set(CMAKE_CXX_COMPILER clang-cl-${llvm})
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc19.38)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc19.38)
set(CMAKE_LINKER lld-link-${llvm})
set(CMAKE_AR llvm-lib-${llvm})
set(CMAKE_MT llvm-mt-${llvm})
set(CMAKE_RC_COMPILER llvm-rc-${llvm})

cmake_path(SET OVRA_MICROSOFT_ABI_DIR NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../build/microsoft-abi")
if(NOT EXISTS "${OVRA_MICROSOFT_ABI_DIR}/state")
    message(FATAL_ERROR "No ${OVRA_MICROSOFT_ABI_DIR} (run cmake/microsoft-abi/prepare)")
endif()

# The order matters: the stand-ins include what stands behind them.
execute_process(COMMAND clang-${llvm} -print-resource-dir
    OUTPUT_VARIABLE resources OUTPUT_STRIP_TRAILING_WHITESPACE)
set(stand_ins "${CMAKE_CURRENT_LIST_DIR}/microsoft-abi/headers")
set(flags "/clang:-nobuiltininc /X")
foreach(folder "${stand_ins}/first" "${OVRA_MICROSOFT_ABI_DIR}/c++" "${stand_ins}" "${resources}/include"
        "${OVRA_MICROSOFT_ABI_DIR}/include")
    string(APPEND flags " -imsvc ${folder}")
endforeach()
# libc++ 19 takes std::jthread for an experiment.
string(APPEND flags " -D_LIBCPP_ENABLE_EXPERIMENTAL")
string(APPEND flags " -D_UCRT -D__USE_MINGW_ANSI_STDIO=0 -D_HAS_EXCEPTIONS=1 /GS- -Wno-dll-attribute-on-redeclaration")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_RC_FLAGS_INIT "-I ${OVRA_MICROSOFT_ABI_DIR}/include")
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "/libpath:${OVRA_MICROSOFT_ABI_DIR}/lib /manifest:no")
endforeach()

list(APPEND CMAKE_FIND_ROOT_PATH "${OVRA_MICROSOFT_ABI_DIR}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(CMAKE_TRY_COMPILE_CONFIGURATION Release)
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)
