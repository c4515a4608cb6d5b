# What find_package(orbinel) reads. The libraries themselves are installed where they are made (OrbinelTargets).
include(CMakePackageConfigHelpers)

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/orbinel-config.cmake.in" orbinel-config.cmake
    INSTALL_DESTINATION "${ORBINEL_CMAKE_DIR}" NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(orbinel-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/orbinel-config.cmake" "${PROJECT_BINARY_DIR}/orbinel-config-version.cmake"
        DESTINATION "${ORBINEL_CMAKE_DIR}" COMPONENT liborbinel-dev)
