# Read by cpack for each kind of package.
if(CPACK_GENERATOR STREQUAL "DEB")
    set(CPACK_PACKAGING_INSTALL_PREFIX /opt/ovra-gui-core)
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
endif()
