# clang-tidy as targets: what was found clean is looked at again when it, or any header, has changed. For the preset tidy,
# which knows how each source is compiled by itself, and compiles none.
#
#   tidied          all of it

add_custom_target(tidied)

file(GLOB_RECURSE tidied_headers CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/src/*.h ${PROJECT_SOURCE_DIR}/tools/*.h)

# clang-tidy for the sources of a target: again whenever one of them or any header has changed.
#
#   ALONE ...   sources that are not looked at together with others, and those that this system does not compile
function(tidy_sources target)
    cmake_parse_arguments(PARSE_ARGV 1 tidy "" "" "ALONE")
    list(TRANSFORM tidy_ALONE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
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
    list(REMOVE_ITEM files ${tidy_ALONE})

    set(number 0)
    set(together 24)
    while(files)
        math(EXPR number "${number} + 1")
        list(SUBLIST files 0 ${together} some)
        list(REMOVE_ITEM files ${some})
        add_tidy_command(${target}_${number} ${some})
    endwhile()
    foreach(file IN LISTS tidy_ALONE)
        get_filename_component(name ${file} NAME_WE)
        add_tidy_command(${name} ${file})
    endforeach()
endfunction()

function(add_tidy_command name)
    set(mark ${CMAKE_BINARY_DIR}/tidied/${name})
    set(tidy ${PROJECT_SOURCE_DIR}/scripts/tidy)
    add_custom_command(OUTPUT ${mark}
        COMMAND ${tidy} ${CMAKE_BINARY_DIR} ${mark} ${ARGN}
        DEPENDS ${ARGN} ${tidied_headers} ${tidy} ${PROJECT_SOURCE_DIR}/.clang-tidy ${PROJECT_SOURCE_DIR}/tools/.clang-tidy
        COMMENT "clang-tidy: ${name}"
        VERBATIM)
    add_custom_target(tidied_${name} DEPENDS ${mark})
    add_dependencies(tidied tidied_${name})
endfunction()
