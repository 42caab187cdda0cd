# What a cross-build takes from the build machine (cmake/mingw-w64.cmake): GoogleTest built from
# the sources libgtest-dev installs, and the header-only CLI11 and nlohmann/json through a folder
# of their own (adding the build machine's whole /usr/include would hide the target's headers).
# CTest runs the test programs through Wine.
set(RAINFOLD_GTEST_SOURCES /usr/src/googletest CACHE PATH "GoogleTest's sources")
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${RAINFOLD_GTEST_SOURCES} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main)
    if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
    endif()
endforeach()

set(host_headers ${CMAKE_BINARY_DIR}/host-headers)
file(MAKE_DIRECTORY ${host_headers})
foreach(pair "CLI11::CLI11;CLI/CLI.hpp;CLI" "nlohmann_json::nlohmann_json;nlohmann/json.hpp;nlohmann")
    list(GET pair 0 target)
    list(GET pair 1 header)
    list(GET pair 2 folder)
    find_path(found_${folder} ${header} PATHS /usr/include /usr/local/include
              NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH REQUIRED)
    file(CREATE_LINK ${found_${folder}}/${folder} ${host_headers}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED)
    set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${host_headers})
endforeach()

# Wine in a prefix of the build's own, quiet.
find_program(RAINFOLD_WINE NAMES wine64 wine REQUIRED)
set(RAINFOLD_WINE_PREFIX ${CMAKE_BINARY_DIR}/wine)
set(CMAKE_CROSSCOMPILING_EMULATOR
    ${CMAKE_COMMAND} -E env WINEPREFIX=${RAINFOLD_WINE_PREFIX} WINEDEBUG=-all ${RAINFOLD_WINE})
