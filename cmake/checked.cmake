# Tests as targets: what has passed runs again only when something it depends on has been built since.
#
#   tested          all tests; tested_NAME: one of them

add_custom_target(tested)

# Some tests wait for most of their time. scripts/build starts more at once than there are processors, and no more compilers.
include(ProcessorCount)
ProcessorCount(processors)
if(processors GREATER 0)
    set_property(GLOBAL APPEND PROPERTY JOB_POOLS building=${processors})
    set(CMAKE_JOB_POOL_COMPILE building)
    set(CMAKE_JOB_POOL_LINK building)
endif()

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
