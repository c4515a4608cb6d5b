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

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

add_library(orbinel_settings INTERFACE)
target_include_directories(orbinel_settings INTERFACE "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src")
target_compile_options(orbinel_settings INTERFACE -Wall -Wextra -Werror -Wshadow -Wnon-virtual-dtor -Wconversion)
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

# orbinel_product(NAME FOLDERS… [LINK targets…]): a library that applications link, made of folders.
function(orbinel_product name)
    cmake_parse_arguments(arg "" "" "FOLDERS;LINK;INCLUDE" ${ARGN})
    set(objects)
    foreach(folder IN LISTS arg_FOLDERS)
        list(APPEND objects $<TARGET_OBJECTS:${folder}>)
    endforeach()
    add_library(${name} ${objects})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/include" ${arg_INCLUDE})
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE Threads::Threads)
    if(ORBINEL_SANITIZE)
        target_link_options(${name} PUBLIC -fsanitize=${ORBINEL_SANITIZE})
    endif()
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${name} PUBLIC ORBINEL_STATIC)
    endif()
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
                                             LINKER_LANGUAGE CXX)
    if(BUILD_SHARED_LIBS AND NOT ORBINEL_SANITIZE)
        target_link_options(${name} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()
