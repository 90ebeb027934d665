# Packages: scripts/package makes them all.
#
#   Linux     TGZ, and DEB in three parts: ovra-gui-core, -dev, -simulation
#   Windows   ZIP, and an installer (NSIS)
#
# The library finds its installation from its own path, so the packages install into a folder of their own:
# /opt/ovra-gui-core.

set(doc_dir share/doc/ovra-gui-core)
install(FILES LICENSE docs/THIRD-PARTY.md DESTINATION ${doc_dir} COMPONENT runtime)
install(FILES README.md CHANGELOG.md DESTINATION ${doc_dir} COMPONENT development)
install(DIRECTORY docs/ DESTINATION ${doc_dir}/docs COMPONENT development
    FILES_MATCHING PATTERN "*.md" PATTERN "*.jpg" PATTERN "*.png" PATTERN THIRD-PARTY.md EXCLUDE)
install(FILES simulation/README.md DESTINATION ${doc_dir}/simulation COMPONENT development) # where the guides' links lead
install(FILES front-ends/console/demo.txt front-ends/console/rehearsal.txt DESTINATION share/ovra-gui-core COMPONENT simulation)

# The licence notices of software that is compiled in or, on Windows, lies beside the library, from its Debian packages.
set(notices nlohmann-json3-dev libcli11-dev libstb-dev)
if(MINGW)
    list(APPEND notices g++-mingw-w64-x86-64-posix mingw-w64-common)
endif()
foreach(package IN LISTS notices)
    if(EXISTS "/usr/share/doc/${package}/copyright")
        install(FILES "/usr/share/doc/${package}/copyright"
            DESTINATION ${doc_dir}/third-party RENAME ${package}.txt COMPONENT runtime)
    endif()
endforeach()

if(MINGW AND EXISTS /usr/share/common-licenses/GPL-3) # to which the compiler's notice refers
    install(FILES /usr/share/common-licenses/GPL-3
        DESTINATION ${doc_dir}/third-party RENAME GPL-3.txt COMPONENT runtime)
endif()

set(CPACK_PACKAGE_NAME ovra-gui-core)
set(CPACK_PACKAGE_VENDOR "the ovra-lib-gui-core authors")
set(CPACK_PACKAGE_CONTACT "the ovra-lib-gui-core authors <ovra-gui-core@example.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGE_INSTALL_DIRECTORY ovra-gui-core)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_COMPONENTS_ALL runtime development simulation)
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/package/CPackOptions.cmake")

if(WIN32)
    set(CPACK_SYSTEM_NAME windows-x64)
    set(CPACK_GENERATOR ZIP NSIS)
    if(CMAKE_HOST_UNIX)
        set(CPACK_NSIS_EXECUTABLE "${PROJECT_SOURCE_DIR}/cmake/package/makensis-x64")
    endif()
    set(CPACK_NSIS_DISPLAY_NAME "ovra-gui-core ${PROJECT_VERSION}")
    set(CPACK_NSIS_PACKAGE_NAME "ovra-gui-core")
    set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
else()
    set(CPACK_SYSTEM_NAME linux-x64)
    set(CPACK_GENERATOR TGZ DEB)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${OVRA_STAGE_DIR}/lib")
    # First the synopsis. CPackOptions.cmake removes the project's, which would stand before each.
    set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
        "core of a frame grabber's user interface\nThe library, the reference host and the programs.")
    set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
        "core of a frame grabber's user interface - development files\nHeaders, CMake package, guides and a front end to copy.")
    set(CPACK_DEBIAN_SIMULATION_DESCRIPTION
        "core of a frame grabber's user interface - virtual boards\nVirtual boards, cameras and applets: images without hardware.")
    # The interface's classes are this version's; find_package(OvraGuiCore) refuses another.
    string(REPLACE "_" "." boost "${OVRA_BOOST_VERSION}")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ovra-gui-core)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ovra-gui-core-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
        "ovra-gui-core (= ${PROJECT_VERSION}), ovra-gui-core-simulation (= ${PROJECT_VERSION}), libboost${boost}-dev")
    set(CPACK_DEBIAN_SIMULATION_PACKAGE_NAME ovra-gui-core-simulation)
    set(CPACK_DEBIAN_SIMULATION_PACKAGE_SECTION misc)
    set(CPACK_DEBIAN_SIMULATION_PACKAGE_DEPENDS "ovra-gui-core (= ${PROJECT_VERSION})")
endif()
include(CPack)

cpack_add_component(runtime DISPLAY_NAME "Library and programs" REQUIRED
    DESCRIPTION "The library, the reference host and the programs")
cpack_add_component(simulation DISPLAY_NAME "Virtual installation" DEPENDS runtime
    DESCRIPTION "Virtual boards, cameras and applets: images without hardware")
cpack_add_component(development DISPLAY_NAME "Development" DEPENDS runtime
    DESCRIPTION "Headers, CMake package, guides and a front end to copy")
