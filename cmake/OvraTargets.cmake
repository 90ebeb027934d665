# Functions for the kinds of targets in this tree, and their common settings.
#
#   ovra_shared_library   a library that other targets link
#   ovra_runtime_module   a library that programs open at run time
#   ovra_program          an executable that is installed
#   ovra_test             a GoogleTest program                      (OvraTesting.cmake)
#   ovra_fuzzer           a program that tries inputs               (OvraFuzzing.cmake)
#
#   ovra-options          language, warnings and platform definitions; linked by all of the above
#   boost-headers         Boost, header-only
#   third-party-headers   the same, and nlohmann-json, CLI11 and stb
#   demo-programs         everything that is installed, and nothing else
#
# Installed files belong to a component: runtime (libraries, programs), development (headers, libraries to link) or
# simulation (the virtual installation).
#
# ${OVRA_STAGE_DIR} has the layout of an installation (bin/, lib/): libraries that find their installation from their own
# path also work in the build tree.

include_guard(GLOBAL)

if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(OVRA_CCACHE ccache)
    mark_as_advanced(OVRA_CCACHE)
    if(OVRA_CCACHE)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${OVRA_CCACHE}")
    endif()
endif()

find_package(Threads REQUIRED)

set(OVRA_STAGE_DIR "${PROJECT_BINARY_DIR}/stage")
include(cmake/OvraAbi.cmake)
ovra_abi(OVRA_ABI)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT WIN32)
    # Not on Windows, where the second setting would remove the inline members of exported classes from the export table.
    set(CMAKE_CXX_VISIBILITY_PRESET hidden)
    set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_custom_target(demo-programs)

# --- compiler options of every target ------------------------------------------------------------

add_library(ovra-options INTERFACE)
target_link_libraries(ovra-options INTERFACE Threads::Threads)
if(MSVC)
    # /EHsc-: functions with C linkage may throw, too, other than with CMake's own /EHsc. C4251 and C4275 warn of exported
    # classes with members of Boost's types, which is safe since one compiler builds all modules of a process.
    target_compile_options(ovra-options INTERFACE
        /W4 /WX /permissive- /utf-8 /Zc:__cplusplus /EHsc- /wd4251 /wd4275)
    target_compile_definitions(ovra-options INTERFACE _CRT_SECURE_NO_WARNINGS) # allow getenv
else()
    target_compile_options(ovra-options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # At -O3 GCC reports a concatenation of strings as a copy onto itself.
        target_compile_options(ovra-options INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
    endif()
endif()
# For folders whose sources log where they are: the path from the top of the tree, whichever machine builds it. Only what
# __FILE__ and std::source_location say: debuggers, coverage and sanitizers find the sources as before.
set(OVRA_PATHS_FROM_TOP)
if(NOT MSVC)
    set(OVRA_PATHS_FROM_TOP "$<$<COMPILE_LANGUAGE:CXX>:-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=>")
endif()
if(WIN32)
    target_compile_definitions(ovra-options INTERFACE _WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
    if(MINGW)
        target_compile_options(ovra-options INTERFACE -Wa,-mbig-obj)
        target_link_options(ovra-options INTERFACE LINKER:--dynamicbase,--nxcompat,--high-entropy-va)
    endif()
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A library with a unique symbol stays in the process: dlclose would not unload it.
    target_compile_options(ovra-options INTERFACE -fno-gnu-unique)
endif()
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=address")
    target_compile_definitions(ovra-options INTERFACE OVRA_ADDRESS_SANITIZER)
elseif(CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
    target_compile_definitions(ovra-options INTERFACE OVRA_THREAD_SANITIZER)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # This warning is for headers; GCC also applies it to sources that a unity source includes.
    target_compile_options(ovra-options INTERFACE $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-subobject-linkage>)
endif()

# --- header-only libraries -----------------------------------------------------------------------

# The library needs boost-headers only; the programs need third-party-headers.
add_library(boost-headers INTERFACE)
add_library(Ovra::boost-headers ALIAS boost-headers)
target_compile_definitions(boost-headers INTERFACE BOOST_ALL_NO_LIB $<BUILD_INTERFACE:BOOST_DLL_USE_STD_FS>)
add_library(third-party-headers INTERFACE)
target_link_libraries(third-party-headers INTERFACE boost-headers)

# _ovra_headers(<target> <folder> <header>): lets <target> find <folder>/<header>.
function(_ovra_headers target folder header)
    if(CMAKE_CROSSCOMPILING)
        # The build machine's whole include folder would hide the cross compiler's own headers. A folder of links
        # contains the header-only libraries only.
        set(OVRA_HEADERS_ROOT "/usr/include" CACHE PATH "Where boost/, nlohmann/, CLI/ and stb/ lie")
        if(NOT EXISTS "${OVRA_HEADERS_ROOT}/${folder}/${header}")
            message(FATAL_ERROR "No ${folder}/${header} below ${OVRA_HEADERS_ROOT} (run scripts/setup)")
        endif()
        set(links "${PROJECT_BINARY_DIR}/headers")
        file(MAKE_DIRECTORY "${links}")
        file(CREATE_LINK "${OVRA_HEADERS_ROOT}/${folder}" "${links}/${folder}" SYMBOLIC)
        set(OVRA_INCLUDE_${folder} "${links}" CACHE INTERNAL "")
        target_include_directories(${target} SYSTEM INTERFACE "$<BUILD_INTERFACE:${links}>")
    else()
        find_path(OVRA_INCLUDE_${folder} "${folder}/${header}" REQUIRED)
        mark_as_advanced(OVRA_INCLUDE_${folder})
        target_include_directories(${target} SYSTEM INTERFACE "$<BUILD_INTERFACE:${OVRA_INCLUDE_${folder}}>")
    endif()
endfunction()

_ovra_headers(boost-headers boost version.hpp)
if(NOT OVRA_HOST_SDK)
    _ovra_headers(third-party-headers nlohmann json.hpp)
    _ovra_headers(third-party-headers CLI CLI.hpp)
    _ovra_headers(third-party-headers stb stb_image_write.h)
endif()
target_link_libraries(third-party-headers INTERFACE ${CMAKE_DL_LIBS})

# --- the compiler's own DLLs ---------------------------------------------------------------------

if(MINGW)
    # One C++ run-time library for all modules of a process: exceptions and type comparison depend on it.
    foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(
            COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${dll}
            OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT EXISTS "${path}")
            message(FATAL_ERROR "The compiler does not know where its ${dll} is")
        endif()
        configure_file("${path}" "${OVRA_STAGE_DIR}/bin/${dll}" COPYONLY)
        install(FILES "${path}" DESTINATION bin COMPONENT runtime)
    endforeach()
endif()

if(OVRA_MICROSOFT_ABI_DIR)
    configure_file("${OVRA_MICROSOFT_ABI_DIR}/lib/c++.dll" "${OVRA_STAGE_DIR}/bin/c++.dll" COPYONLY)
    install(FILES "${OVRA_MICROSOFT_ABI_DIR}/lib/c++.dll" DESTINATION bin COMPONENT runtime)
endif()

# --- the kinds of targets ------------------------------------------------------------------------

# ovra_version_resource(<target> <file name>)
#
# Adds the version information that Windows shows. No effect on other platforms.
file(STRINGS LICENSE OVRA_COPYRIGHT REGEX "^Copyright")
function(ovra_version_resource target file)
    if(NOT WIN32)
        return()
    endif()
    set(type VFT_DLL)
    get_target_property(kind ${target} TYPE)
    if(kind STREQUAL "EXECUTABLE")
        set(type VFT_APP)
    endif()
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/package/version.rc.in" "${resource}" @ONLY)
    target_sources(${target} PRIVATE "${resource}")
endfunction()

# Common settings of shared libraries and modules. Private to this file.
function(_ovra_library target)
    target_link_libraries(${target} PRIVATE ovra-options)
    if(MINGW)
        # A DLL exports only what is marked for export, even if that is nothing.
        target_link_options(${target} PRIVATE LINKER:--exclude-all-symbols)
    elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_link_options(${target} PRIVATE LINKER:-z,defs)
    endif()
endfunction()

# ovra_shared_library(<target>
#     EXPORT_MACRO <MACRO>          <MACRO>_BUILD is defined while the library itself is compiled
#     SOURCES <file>...
#     [PUBLIC_INCLUDE <dir>...]     for the library and targets that link it
#     [PUBLIC_LINK <target>...]
#     [PRIVATE_LINK <target>...]
#     [FOR_TESTS])                  built in tests/<target>/, not installed
#
# <target>.dll in bin/ on Windows, lib<target>.so in lib/ elsewhere; staged and installed.
function(ovra_shared_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg
        "FOR_TESTS" "EXPORT_MACRO" "SOURCES;PUBLIC_INCLUDE;PUBLIC_LINK;PRIVATE_LINK")
    _ovra_check_arguments(ovra_shared_library ${target} "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")
    if(NOT arg_EXPORT_MACRO)
        message(FATAL_ERROR "ovra_shared_library(${target}): EXPORT_MACRO is missing")
    endif()

    add_library(${target} SHARED ${arg_SOURCES})
    _ovra_library(${target})
    target_compile_definitions(${target} PRIVATE ${arg_EXPORT_MACRO}_BUILD)
    foreach(folder IN LISTS arg_PUBLIC_INCLUDE)
        target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${folder}>")
    endforeach()
    target_compile_features(${target} INTERFACE cxx_std_20)
    target_link_libraries(${target} PUBLIC ${arg_PUBLIC_LINK} PRIVATE ${arg_PRIVATE_LINK})
    if(WIN32)
        set_target_properties(${target} PROPERTIES PREFIX "")
    endif()

    if(arg_FOR_TESTS)
        _ovra_place_for_tests(${target})
        return()
    endif()
    ovra_version_resource(${target} "${target}.dll")
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${OVRA_STAGE_DIR}/bin"
        LIBRARY_OUTPUT_DIRECTORY "${OVRA_STAGE_DIR}/lib"
        ARCHIVE_OUTPUT_DIRECTORY "${OVRA_STAGE_DIR}/lib"
        INSTALL_RPATH "$ORIGIN"
        BUILD_WITH_INSTALL_RPATH ON)
    install(TARGETS ${target} EXPORT gui-core
        RUNTIME DESTINATION bin COMPONENT runtime
        LIBRARY DESTINATION lib COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION lib COMPONENT development
        INCLUDES DESTINATION include)
    add_dependencies(demo-programs ${target})
endfunction()

# ovra_runtime_module(<target>
#     SOURCES <file>...
#     [LINK <target>...]
#     [DEFINITIONS <definition>...]
#     [OUTPUT_NAME <name>]          default: <target>
#     [FOR_TESTS])                  built in tests/<target>/, not installed
#
# <name>.dll or <name>.so, without a prefix, in bin/ on both platforms; staged and installed.
function(ovra_runtime_module target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "FOR_TESTS" "OUTPUT_NAME" "SOURCES;LINK;DEFINITIONS")
    _ovra_check_arguments(ovra_runtime_module ${target} "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")

    add_library(${target} MODULE ${arg_SOURCES})
    _ovra_library(${target})
    target_compile_definitions(${target} PRIVATE ${arg_DEFINITIONS})
    target_link_libraries(${target} PRIVATE ${arg_LINK})
    set_target_properties(${target} PROPERTIES PREFIX "")
    if(arg_OUTPUT_NAME)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME "${arg_OUTPUT_NAME}")
    endif()

    if(arg_FOR_TESTS)
        _ovra_place_for_tests(${target})
        return()
    endif()
    ovra_version_resource(${target} "${target}.dll")
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY "${OVRA_STAGE_DIR}/bin"
        INSTALL_RPATH "$ORIGIN/../lib"
        BUILD_WITH_INSTALL_RPATH ON)
    install(TARGETS ${target} LIBRARY DESTINATION bin COMPONENT simulation)
    add_dependencies(demo-programs ${target})
endfunction()

# ovra_program(<target>
#     SOURCES <file>...
#     [LINK <target>...]
#     [OPENS <module>...])          built first: the program opens them at run time
#
# A console program in bin/; staged and installed.
function(ovra_program target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK;OPENS")
    _ovra_check_arguments(ovra_program ${target} "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")

    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE ovra-options ${arg_LINK})
    _ovra_opens(${target} "${arg_OPENS}")
    ovra_version_resource(${target} "${target}.exe")
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${OVRA_STAGE_DIR}/bin"
        INSTALL_RPATH "$ORIGIN/../lib"
        BUILD_WITH_INSTALL_RPATH ON)
    install(TARGETS ${target} RUNTIME DESTINATION bin COMPONENT runtime)
    add_dependencies(demo-programs ${target})
endfunction()

# --- details -------------------------------------------------------------------------------------

function(_ovra_check_arguments function target unparsed sources)
    if(unparsed)
        message(FATAL_ERROR "${function}(${target}): unknown arguments ${unparsed}")
    endif()
    if(NOT sources)
        message(FATAL_ERROR "${function}(${target}): SOURCES is missing")
    endif()
endfunction()

# Each gets a folder of its own, since two variants of one library have the same file name.
function(_ovra_place_for_tests target)
    set(folder "${PROJECT_BINARY_DIR}/tests/${target}")
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${folder}"
        LIBRARY_OUTPUT_DIRECTORY "${folder}"
        ARCHIVE_OUTPUT_DIRECTORY "${folder}")
endfunction()

function(_ovra_opens target modules)
    foreach(module IN LISTS modules)
        add_dependencies(${target} ${module})
    endforeach()
endfunction()
