# How a product is installed: for find_package(orbinel) and for pkg-config.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(ORBINEL_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/orbinel")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/orbinel-config.cmake.in" orbinel-config.cmake
    INSTALL_DESTINATION "${ORBINEL_CMAKE_DIR}" NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(orbinel-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/orbinel-config.cmake" "${PROJECT_BINARY_DIR}/orbinel-config-version.cmake"
        DESTINATION "${ORBINEL_CMAKE_DIR}" COMPONENT liborbinel-dev)

# orbinel_install(NAME PACKAGE REQUIRES products… MODULES names…): a product with its headers, its CMake targets and its
# pkg-config file. PACKAGE: the package of the library; the one of its headers has "-dev" at the end.
function(orbinel_install name package)
    cmake_parse_arguments(arg "" "" "REQUIRES;MODULES" ${ARGN})
    install(TARGETS ${name} EXPORT ${name}-targets
            LIBRARY COMPONENT ${package} NAMELINK_COMPONENT ${package}-dev
            ARCHIVE COMPONENT ${package}-dev
            FILE_SET HEADERS COMPONENT ${package}-dev)
    install(EXPORT ${name}-targets NAMESPACE orbinel:: DESTINATION "${ORBINEL_CMAKE_DIR}" COMPONENT ${package}-dev)

    set(required ${arg_REQUIRES})
    list(TRANSFORM required APPEND " = ${PROJECT_VERSION}")
    if(BUILD_SHARED_LIBS)
        set(flags "")
        set(threads "")
    else()
        set(flags -DORBINEL_STATIC)
        set(threads -pthread)
        foreach(module IN LISTS arg_MODULES)
            list(APPEND required ${${module}_MODULES})
        endforeach()
        orbinel_install_dependencies(${name} ${package} ${arg_MODULES})
    endif()
    list(TRANSFORM required REPLACE "([a-z0-9])>=" "\\1 >= ")
    list(JOIN required ", " required)
    file(RELATIVE_PATH to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/library.pc.in" ${name}.pc @ONLY)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
            COMPONENT ${package}-dev)
endfunction()

# orbinel_install_dependencies(NAME PACKAGE modules…): who links a static library has to find what it needs, too; who
# links a shared one needs nothing of that.
function(orbinel_install_dependencies name package)
    set(content "")
    foreach(module IN LISTS ARGN)
        list(JOIN ${module}_MODULES " " wanted)
        string(APPEND content "orbinel_find_modules(${module} ${wanted})\n")
    endforeach()
    file(CONFIGURE OUTPUT ${name}-dependencies.cmake CONTENT "${content}")
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}-dependencies.cmake" DESTINATION "${ORBINEL_CMAKE_DIR}"
            COMPONENT ${package}-dev)
endfunction()
