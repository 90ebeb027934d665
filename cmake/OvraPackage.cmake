# Installs the files for find_package(OvraGuiCore) and pkg-config.

include(CMakePackageConfigHelpers)

set(package_dir lib/cmake/OvraGuiCore)

file(STRINGS "${OVRA_INCLUDE_boost}/boost/version.hpp" OVRA_BOOST_VERSION REGEX "define BOOST_LIB_VERSION")
string(REGEX REPLACE ".*\"([0-9_]+)\".*" "\\1" OVRA_BOOST_VERSION "${OVRA_BOOST_VERSION}")
set(OVRA_BRINGS_HOST TRUE)
set(files cmake/OvraAbi.cmake)
if(OVRA_HOST_SDK)
    set(OVRA_BRINGS_HOST FALSE)
    list(APPEND files cmake/OvraHostSdk.cmake)
endif()

configure_package_config_file(cmake/package/OvraGuiCoreConfig.cmake.in OvraGuiCoreConfig.cmake
    INSTALL_DESTINATION ${package_dir})
set(compatibility SameMajorVersion)
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(compatibility SameMinorVersion) # before 1.0 each of them may change the interface
endif()
write_basic_package_version_file(OvraGuiCoreConfigVersion.cmake COMPATIBILITY ${compatibility})
install(FILES
    "${PROJECT_BINARY_DIR}/OvraGuiCoreConfig.cmake" "${PROJECT_BINARY_DIR}/OvraGuiCoreConfigVersion.cmake" ${files}
    DESTINATION ${package_dir} COMPONENT development)
if(MINGW AND CMAKE_CROSSCOMPILING)
    install(FILES cmake/toolchain-mingw-w64.cmake DESTINATION ${package_dir} RENAME mingw-w64.cmake COMPONENT development)
endif()
install(DIRECTORY templates DESTINATION share/ovra-gui-core COMPONENT development)

install(TARGETS boost-headers EXPORT gui-core)
foreach(component gui-core reference-host simulation conformance)
    if(component STREQUAL "gui-core" OR TARGET ${component})
        install(EXPORT ${component} FILE ${component}-targets.cmake
            NAMESPACE Ovra:: DESTINATION ${package_dir} COMPONENT development)
    endif()
endforeach()

if(NOT WIN32 AND OVRA_BRINGS_HOST)
    set(OVRA_PKGCONFIG_LIBS "-lovra-lib-gui-core")
    get_target_property(libraries ovra-lib-gui-core INTERFACE_LINK_LIBRARIES)
    list(REMOVE_ITEM libraries boost-headers)
    foreach(library IN LISTS libraries)
        string(APPEND OVRA_PKGCONFIG_LIBS " -l${library}")
    endforeach()
    foreach(name ovra-gui-core ovra-reference-host)
        configure_file(cmake/package/${name}.pc.in ${name}.pc @ONLY)
        install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION lib/pkgconfig COMPONENT development)
    endforeach()
endif()
