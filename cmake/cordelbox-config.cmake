# find_package(cordelbox): the target cordelbox::cordelbox, which needs nothing else.
include(${CMAKE_CURRENT_LIST_DIR}/cordelbox-targets.cmake)
