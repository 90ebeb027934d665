# OVRA_HOST_LIBRARIES: the host libraries that the library calls.
#
# ovra_host_sdk(<problem>): imported targets for the host that is installed in OVRA_HOST_SDK, with the names of the reference
# host's targets in an installation (Ovra::ovra-core) and in this tree (ovra-core). <problem>: what the folder lacks, or "".

set(OVRA_HOST_LIBRARIES
    ovra_log
    ovra-core
    ovra-lib-environment
    ovra-lib-parameters
    ovra-lib-display
    ovra-lib-display-fglib
    ovra-lib-fglib-model
    ovra-lib-genicam-model)

function(ovra_host_sdk problem)
    set(${problem} "" PARENT_SCOPE)
    if(TARGET Ovra::ovra-core)
        return() # another folder of the project has found the package
    endif()
    if(NOT IS_DIRECTORY "${OVRA_HOST_SDK}/include")
        set(${problem} "OVRA_HOST_SDK: no folder ${OVRA_HOST_SDK}/include" PARENT_SCOPE)
        return()
    endif()
    foreach(library IN LISTS OVRA_HOST_LIBRARIES)
        # Not cached: OVRA_HOST_SDK may change.
        find_library(file_${library} ${library}
            PATHS "${OVRA_HOST_SDK}/lib" NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
        if(NOT file_${library})
            set(${problem} "OVRA_HOST_SDK: no library ${library} in ${OVRA_HOST_SDK}/lib" PARENT_SCOPE)
            return()
        endif()
    endforeach()
    foreach(library IN LISTS OVRA_HOST_LIBRARIES)
        set(target Ovra::${library})
        add_library(${target} SHARED IMPORTED GLOBAL)
        # On Windows this is the import library; only running needs the DLL.
        set_target_properties(${target} PROPERTIES
            IMPORTED_LOCATION "${file_${library}}"
            IMPORTED_IMPLIB "${file_${library}}")
        target_include_directories(${target} INTERFACE "${OVRA_HOST_SDK}/include")
        target_link_libraries(${target} INTERFACE Ovra::boost-headers)
        add_library(${library} ALIAS ${target})
    endforeach()
endfunction()
