# GoogleTest: the system's own, or for another target built from the sources that the system keeps.

if(CMAKE_CROSSCOMPILING)
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
else()
    find_package(GTest REQUIRED)
endif()
