# Header-only libraries of the system for another target: one folder that holds nothing but a link to the headers, since
# the system's own include folder belongs to the system's own run-time.

function(add_header_only target folder)
    find_path(${folder}_INCLUDE_DIR ${folder} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    set(links ${CMAKE_BINARY_DIR}/header_only/${folder})
    file(MAKE_DIRECTORY ${links})
    file(CREATE_LINK ${${folder}_INCLUDE_DIR}/${folder} ${links}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} INTERFACE ${links})
endfunction()
