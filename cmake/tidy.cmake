# clang-tidy as targets: what was found clean is looked at again when it, or any header, has changed. For the preset tidy,
# which knows how each source is compiled by itself, and compiles none.
#
#   tidied          all of it
#   tidied/FILE     clang's analyser on one source
#   tidied_together all other checks, on several sources at once

add_custom_target(tidied)
add_custom_target(tidied_together)

file(GLOB_RECURSE tidied_headers CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/src/*.h ${PROJECT_SOURCE_DIR}/tools/*.h)

# clang-tidy for the sources of a target, and for further files that this system does not compile: again whenever one of
# them or any header has changed.
function(tidy_sources target)
    cmake_parse_arguments(PARSE_ARGV 1 tidy "" "" "ALSO")
    if(CMAKE_CROSSCOMPILING)
        return()
    endif()
    set(files)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
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
        list(APPEND files ${file})
    endforeach()

    set(number 0)
    set(together 12)
    while(files)
        math(EXPR number "${number} + 1")
        list(SUBLIST files 0 ${together} some)
        list(REMOVE_ITEM files ${some})
        add_tidy_commands(${target}_${number} ${some})
    endwhile()
    foreach(source IN LISTS tidy_ALSO) # which define what the others do
        get_filename_component(file ${source} ABSOLUTE)
        get_filename_component(name ${source} NAME_WE)
        add_tidy_commands(${name} ${file})
    endforeach()
endfunction()

# The analyser for each of the files, the other checks for all of them at once.
function(add_tidy_commands batch)
    set(marks)
    foreach(file IN LISTS ARGN)
        file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR} ${file})
        add_tidy_command(${name} analyse ${file})
        list(APPEND marks ${CMAKE_BINARY_DIR}/tidied/${name})
    endforeach()
    add_tidy_command(${batch} check ${ARGN})
    add_custom_target(tidied_${batch} DEPENDS ${CMAKE_BINARY_DIR}/tidied/${batch})
    add_custom_target(analysed_${batch} DEPENDS ${marks})
    add_dependencies(tidied_together tidied_${batch})
    add_dependencies(tidied tidied_${batch} analysed_${batch})
endfunction()

function(add_tidy_command name what)
    set(mark ${CMAKE_BINARY_DIR}/tidied/${name})
    set(tidy ${PROJECT_SOURCE_DIR}/scripts/tidy)
    get_filename_component(folder ${mark} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    add_custom_command(OUTPUT ${mark}
        COMMAND ${tidy} ${CMAKE_BINARY_DIR} ${mark} ${what} ${ARGN}
        DEPENDS ${ARGN} ${tidied_headers} ${tidy} ${PROJECT_SOURCE_DIR}/.clang-tidy ${PROJECT_SOURCE_DIR}/tools/.clang-tidy
        COMMENT "clang-tidy: ${what} ${name}"
        VERBATIM)
endfunction()
