# Debian packages of the shared libraries, by cpack -G DEB (CMakePresets.json has a preset for it). What needs GTK and
# the web engine is in packages of its own: a device without a window installs nothing of that.

set(CPACK_PACKAGE_VENDOR "Orbinel")
set(CPACK_PACKAGE_CONTACT "Orbinel <packages@orbinel.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)

# What the libraries need of the system is read from them, where the program for that is there.
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
if(DPKG_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src" "${PROJECT_BINARY_DIR}/hosts/linux")
endif()
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# Options that are set are newer than the functions that are called, by which dpkg-shlibdeps goes: the oldest libcurl is
# said here, by the package that has it.
set(libcurl)
find_program(DPKG_QUERY dpkg-query)
if(DPKG_QUERY)
    get_target_property(libcurl_files PkgConfig::CURL INTERFACE_LINK_LIBRARIES)
    list(GET libcurl_files 0 libcurl_file)
    file(REAL_PATH "${libcurl_file}" libcurl_file)
    execute_process(COMMAND "${DPKG_QUERY}" --search "${libcurl_file}"
                    OUTPUT_VARIABLE libcurl_owner ERROR_QUIET RESULT_VARIABLE libcurl_is_nobodys)
    if(NOT libcurl_is_nobodys)
        string(REGEX REPLACE ":.*" " (>= ${ORBINEL_OLDEST_LIBCURL})" libcurl "${libcurl_owner}")
    endif()
endif()

# orbinel_install_package_documents(COMPONENT NAME): what Debian asks of each package.
function(orbinel_install_package_documents component name)
    string(TIMESTAMP today "%a, %d %b %Y %H:%M:%S +0000" UTC)
    set(changelog "${PROJECT_BINARY_DIR}/debian/${name}/changelog")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in" "${changelog}" @ONLY)
    execute_process(COMMAND gzip -9 --no-name --force "${changelog}" COMMAND_ERROR_IS_FATAL ANY)
    install(FILES "${PROJECT_SOURCE_DIR}/cmake/debian/copyright" "${changelog}.gz"
            DESTINATION "share/doc/${name}" COMPONENT ${component})
endfunction()

# orbinel_package(COMPONENT NAME SECTION DESCRIPTION [DEPENDS…]): one package. What it depends on is of this
# version, unless another one is said.
function(orbinel_package component name section description)
    list(TRANSFORM ARGN REPLACE "^([^ ]+)$" "\\1 (= ${PROJECT_VERSION})" OUTPUT_VARIABLE depends)
    list(JOIN depends ", " depends)
    string(TOUPPER ${component} key)
    if(section STREQUAL libs)
        set(CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/debian/triggers" PARENT_SCOPE)
    endif()
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_COMPONENT_${key}_DESCRIPTION "${description}" PARENT_SCOPE)
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
    orbinel_install_package_documents(${component} ${name})
endfunction()

set(CPACK_COMPONENTS_ALL)
set(library liborbinel${PROJECT_VERSION_MAJOR})
orbinel_package(liborbinel ${library} libs "The library, with the services of Linux and those in memory."
                ${libcurl})
orbinel_package(liborbinel-dev liborbinel-dev libdevel "Headers and what CMake and pkg-config read." ${library})
if(ORBINEL_BUILD_APPS)
    orbinel_package(orbinel-tools orbinel-tools devel "The tool: plays scenarios, stands in for the backend, decodes."
                    ${libcurl})
endif()
if(TARGET orbinel-gtk)
    set(gtk_library liborbinel-gtk${PROJECT_VERSION_MAJOR})
    orbinel_package(liborbinel-gtk ${gtk_library} libs "Services of applications with a GTK window." ${library})
    orbinel_package(liborbinel-gtk-dev liborbinel-gtk-dev libdevel "Headers for applications with a GTK window."
                    ${gtk_library} liborbinel-dev)
    if(ORBINEL_BUILD_APPS)
        orbinel_package(orbinel-tools-gtk orbinel-tools-gtk devel "Lets the tool play scenarios in a window."
                        orbinel-tools)
    endif()
endif()

include(CPack)
