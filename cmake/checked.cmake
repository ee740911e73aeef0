# Tests and analyses as targets: what has passed runs again only when something it depends on has been built since.
#
#   tested          all tests; tested_NAME: one of them
#   tidied          clang-tidy on every source, a file at a time

add_custom_target(tested)
add_custom_target(tidied)

# A test for ctest and for the target `tested`. NEEDS are targets and files that it uses besides its command. The log and
# the mark that it passed lie in tested/NAME of the build.
function(add_checked_test name)
    cmake_parse_arguments(PARSE_ARGV 1 test "" "" "COMMAND;NEEDS")
    add_test(NAME ${name} COMMAND ${test_COMMAND})
    set_property(GLOBAL APPEND PROPERTY cordelbox_checked_tests ${name})
    if(CMAKE_CROSSCOMPILING) # they need surroundings, which scripts/test-windows makes
        return()
    endif()
    list(GET test_COMMAND 0 program)
    set(folder ${CMAKE_BINARY_DIR}/tested/${name})
    # ctest writes beside the tests that it is given: with a folder for each they run side by side.
    file(CONFIGURE OUTPUT ${folder}/CTestTestfile.cmake CONTENT "subdirs(\"${CMAKE_BINARY_DIR}\")\n")
    set(run_test ${PROJECT_SOURCE_DIR}/tests/support/run_test)
    add_custom_command(OUTPUT ${folder}/passed
        COMMAND ${run_test} ${CMAKE_CTEST_COMMAND} ${folder} ${name}
        DEPENDS ${program} ${test_NEEDS} ${run_test}
        COMMENT "Testing ${name}"
        VERBATIM)
    add_custom_target(tested_${name} DEPENDS ${folder}/passed)
    add_dependencies(tested tested_${name})
endfunction()

# Says which tests of these folders and those below them ./check would pass by.
function(look_for_unchecked_tests)
    get_property(checked GLOBAL PROPERTY cordelbox_checked_tests)
    set(folders ${ARGN})
    while(folders)
        list(POP_FRONT folders folder)
        get_property(inner DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
        list(APPEND folders ${inner})
        get_property(tests DIRECTORY ${folder} PROPERTY TESTS)
        foreach(test IN LISTS tests)
            if(NOT test IN_LIST checked)
                message(WARNING "the test ${test} is not run by ./check: add_checked_test adds one that is")
            endif()
        endforeach()
    endwhile()
endfunction()

# clang-tidy for the sources of a target, whenever one was compiled, and for further files that this system does not
# compile.
function(tidy_sources target)
    cmake_parse_arguments(PARSE_ARGV 1 tidy "" "" "ALSO")
    if(CMAKE_CROSSCOMPILING)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources tidy_ALSO)
        get_filename_component(file ${source} ABSOLUTE)
        file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR} ${file})
        if(name MATCHES "\\.\\./|^build/|^tests/" OR NOT name MATCHES "\\.cpp$")
            continue()
        endif()
        get_property(tidied GLOBAL PROPERTY cordelbox_tidied_sources)
        if(name IN_LIST tidied) # compiled for another target too
            continue()
        endif()
        set_property(GLOBAL APPEND PROPERTY cordelbox_tidied_sources ${name})
        set(depends ${file} ${PROJECT_SOURCE_DIR}/.clang-tidy)
        if(NOT source IN_LIST tidy_ALSO)
            string(REPLACE "../" "__/" object ${source})
            list(APPEND depends ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.dir/${object}.o)
        endif()
        set(mark ${CMAKE_BINARY_DIR}/tidied/${name})
        get_filename_component(folder ${mark} DIRECTORY)
        file(MAKE_DIRECTORY ${folder})
        add_custom_command(OUTPUT ${mark}
            COMMAND ${PROJECT_SOURCE_DIR}/scripts/tidy ${CMAKE_BINARY_DIR} ${file} ${mark}
            DEPENDS ${depends}
            COMMENT "Analysing ${name}"
            VERBATIM)
        list(APPEND marks ${mark})
    endforeach()
    add_custom_target(tidied_${target} DEPENDS ${marks})
    add_dependencies(tidied tidied_${target})
endfunction()
