# The settings that every target shares, and the two ways in which a folder becomes part of a product.
#
# Each folder is an object library, compiled once. The products (`orbinel`, `orbinel-linux`, …) are libraries made of
# those objects; what needs the inside (tests, benchmarks, the command-line tool) links the objects themselves.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ${ORBINEL_BUILD_TESTS})  # by a test: each public header compiles alone

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

# What pkg-config has to find: glib-2.0 for PkgConfig::GLIB, and so on. libcurl of that version has the options that keep
# redirections to http and https, and the network thread from waiting for a name that nobody looks up any more.
set(ORBINEL_OLDEST_LIBCURL 7.87)
set(GLIB_MODULES glib-2.0)
set(CURL_MODULES libcurl>=${ORBINEL_OLDEST_LIBCURL})
set(SQLITE_MODULES sqlite3>=3.35)
set(GTK_MODULES gtk4>=4.8 webkitgtk-6.0 gio-unix-2.0)

add_library(orbinel_settings INTERFACE)
target_include_directories(orbinel_settings INTERFACE "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src")
target_compile_options(orbinel_settings INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Wconversion)
if(PROJECT_IS_TOP_LEVEL)
    target_compile_options(orbinel_settings INTERFACE -Werror)  # not where somebody's newer compiler warns of more
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(orbinel_settings INTERFACE -Wthread-safety)
endif()
if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(orbinel_settings INTERFACE ORBINEL_STATIC)
endif()
if(ORBINEL_SANITIZE)
    target_compile_options(orbinel_settings INTERFACE -fsanitize=${ORBINEL_SANITIZE} -fno-sanitize-recover=all
                                                      -fno-omit-frame-pointer)
    target_link_options(orbinel_settings INTERFACE -fsanitize=${ORBINEL_SANITIZE})
endif()
target_link_libraries(orbinel_settings INTERFACE Threads::Threads)

# orbinel_folder(NAME SOURCES… [LINK targets…]): one folder of the source tree as an object library.
function(orbinel_folder name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} OBJECT ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC orbinel_settings ${arg_LINK})
endfunction()

# orbinel_product(NAME HEADERS directory FOLDERS… [LINK targets…] [MODULES names…] [PACKAGE name]): a library that
# applications link, made of folders; orbinel-linux is the target orbinel::linux to them.
#   HEADERS  what is below this directory is public, and installed
#   LINK     what its public headers need of the other products
#   MODULES  what only its inside needs: PkgConfig::NAME, which pkg-config finds by the modules in NAME_MODULES
#   PACKAGE  which package it belongs to, liborbinel unless said
function(orbinel_product name)
    cmake_parse_arguments(arg "" "HEADERS;PACKAGE" "FOLDERS;LINK;MODULES" ${ARGN})
    if(NOT arg_PACKAGE)
        set(arg_PACKAGE liborbinel)
    endif()
    list(TRANSFORM arg_MODULES PREPEND PkgConfig:: OUTPUT_VARIABLE modules)
    set(objects)
    foreach(folder IN LISTS arg_FOLDERS)
        list(APPEND objects $<TARGET_OBJECTS:${folder}>)
    endforeach()
    add_library(${name} ${objects})
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${arg_HEADERS}/*.h" "${arg_HEADERS}/*.hpp")
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${arg_HEADERS}" FILES ${headers})
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE Threads::Threads ${modules})
    if(ORBINEL_SANITIZE)
        target_link_options(${name} PUBLIC -fsanitize=${ORBINEL_SANITIZE})
    endif()
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${name} PUBLIC ORBINEL_STATIC)
    endif()
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
                                             LINKER_LANGUAGE CXX)
    if(BUILD_SHARED_LIBS AND NOT ORBINEL_SANITIZE)
        set(exported "${PROJECT_SOURCE_DIR}/cmake/exported.map")
        target_link_options(${name} PRIVATE -Wl,--no-undefined "-Wl,--version-script=${exported}")
        set_target_properties(${name} PROPERTIES LINK_DEPENDS "${exported}")
    endif()

    string(REGEX REPLACE "^orbinel-" "" short_name ${name})
    add_library(orbinel::${short_name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES EXPORT_NAME ${short_name} INSTALL_RPATH "$ORIGIN")
    if(ORBINEL_INSTALL)
        orbinel_install(${name} "${arg_PACKAGE}" REQUIRES ${arg_LINK} MODULES ${arg_MODULES})
    endif()
endfunction()
