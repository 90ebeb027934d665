# The host as it is installed on a site: imported targets under the names that the reference host's
# targets bear in a build of this tree alone.

include_guard(GLOBAL)

foreach(folder include lib)
    if(NOT IS_DIRECTORY "${OVRA_HOST_SDK}/${folder}")
        message(FATAL_ERROR "OVRA_HOST_SDK: no folder ${OVRA_HOST_SDK}/${folder}")
    endif()
endforeach()

foreach(library
        ovra-core
        ovra-lib-environment
        ovra-lib-parameters
        ovra-lib-display
        ovra-lib-display-fglib
        ovra-lib-fglib-model
        ovra-lib-genicam-model
        ovra_log)
    find_library(OVRA_HOST_SDK_${library} ${library}
        PATHS "${OVRA_HOST_SDK}/lib" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    mark_as_advanced(OVRA_HOST_SDK_${library})
    add_library(${library} SHARED IMPORTED GLOBAL)
    # On Windows this is the import library; the DLL itself is needed at run time only.
    set_target_properties(${library} PROPERTIES
        IMPORTED_LOCATION "${OVRA_HOST_SDK_${library}}"
        IMPORTED_IMPLIB "${OVRA_HOST_SDK_${library}}")
    target_include_directories(${library} INTERFACE "${OVRA_HOST_SDK}/include")
    target_link_libraries(${library} INTERFACE boost-headers)
endforeach()
