# OVRA_HOST_LIBRARIES: the host libraries that the library calls.
#
# ovra_host_sdk(): imported targets for the host that is installed in OVRA_HOST_SDK, with the names of the reference host's
# targets in an installation (Ovra::ovra-core) and in this tree (ovra-core).

include_guard(GLOBAL)

set(OVRA_HOST_LIBRARIES
    ovra_log
    ovra-core
    ovra-lib-environment
    ovra-lib-parameters
    ovra-lib-display
    ovra-lib-display-fglib
    ovra-lib-fglib-model
    ovra-lib-genicam-model)

function(ovra_host_sdk)
    foreach(folder include lib)
        if(NOT IS_DIRECTORY "${OVRA_HOST_SDK}/${folder}")
            message(FATAL_ERROR "OVRA_HOST_SDK: no folder ${OVRA_HOST_SDK}/${folder}")
        endif()
    endforeach()
    foreach(library IN LISTS OVRA_HOST_LIBRARIES)
        find_library(OVRA_HOST_SDK_${library} ${library}
            PATHS "${OVRA_HOST_SDK}/lib" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
        mark_as_advanced(OVRA_HOST_SDK_${library})
        set(target Ovra::${library})
        add_library(${target} SHARED IMPORTED GLOBAL)
        # On Windows this is the import library; only running needs the DLL.
        set_target_properties(${target} PROPERTIES
            IMPORTED_LOCATION "${OVRA_HOST_SDK_${library}}"
            IMPORTED_IMPLIB "${OVRA_HOST_SDK_${library}}")
        target_include_directories(${target} INTERFACE "${OVRA_HOST_SDK}/include")
        target_link_libraries(${target} INTERFACE Ovra::boost-headers)
        add_library(${library} ALIAS ${target})
    endforeach()
endfunction()
