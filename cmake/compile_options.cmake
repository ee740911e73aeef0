# Warnings, hardening and instrumentation for everything that is built here.

add_library(cordelbox_warnings INTERFACE)
target_compile_options(cordelbox_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang") # clang 19 warns of what std::stable_sort of GCC 12's library uses; GCC warns of ours
    target_compile_options(cordelbox_warnings INTERFACE -Wno-deprecated-declarations)
endif()
if(CORDELBOX_WARNINGS_AS_ERRORS)
    target_compile_options(cordelbox_warnings INTERFACE -Werror)
endif()
if(CORDELBOX_SANITIZE)
    add_compile_options(-fsanitize=${CORDELBOX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${CORDELBOX_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        add_compile_options(-fno-sanitize=vptr) # looks through a pipe, which tests without free descriptors lack
    endif()
elseif(NOT CORDELBOX_COVERAGE)
    add_compile_options(-fstack-protector-strong)
    if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
        add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
    if(WIN32)
        add_link_options(-fstack-protector-strong) # links what both options call
    else()
        add_compile_options(-fstack-clash-protection -fcf-protection)
        add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack LINKER:-z,shstk)
    endif()
endif()
