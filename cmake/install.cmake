# What `cmake --install` lays down: the library, what a host is built with, and the tool with its documents. The
# components are Runtime, Development and Tool.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Hosts ask for libcordelbox.so.1: the number changes when a host must be built anew.
set_target_properties(cordelbox PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})

install(TARGETS cordelbox EXPORT cordelbox
    RUNTIME COMPONENT Runtime
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/cordelbox.h TYPE INCLUDE COMPONENT Development)

# For find_package(cordelbox).
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/cordelbox)
install(EXPORT cordelbox FILE cordelbox-targets.cmake NAMESPACE cordelbox::
    DESTINATION ${package_folder} COMPONENT Development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cordelbox-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES cmake/cordelbox-config.cmake ${PROJECT_BINARY_DIR}/cordelbox-config-version.cmake
    DESTINATION ${package_folder} COMPONENT Development)

# The pages, with what they link to, in the places that they have beside each other in the sources.
if(WIN32)
    set(document_folder .)
else()
    set(document_folder ${CMAKE_INSTALL_DOCDIR})
endif()
file(GLOB top_pages CONFIGURE_DEPENDS *.md)
file(GLOB pages CONFIGURE_DEPENDS docs/*.md docs/*.png)
install(FILES ${top_pages} DESTINATION ${document_folder} COMPONENT Development)
install(FILES ${pages} DESTINATION ${document_folder}/docs COMPONENT Development)
install(FILES examples/sending_host.cpp DESTINATION ${document_folder}/examples COMPONENT Development)
install(DIRECTORY samples/Cordelbox DESTINATION ${document_folder}/samples COMPONENT Development)

# The printers of the samples are samples, not printers.
set(sample_printers PATTERN Atrium.xml EXCLUDE PATTERN Workshop.xml EXCLUDE)

if(WIN32)
    # The library is found beside the tool, and so are the documents.
    install(FILES src/platform/windows/cordelbox.def DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
    install(TARGETS cordelctl COMPONENT Tool)
    install(DIRECTORY samples/Cordelbox TYPE BIN COMPONENT Tool ${sample_printers})
    install(FILES samples/storage-report.json DESTINATION samples COMPONENT Tool)
    return()
endif()

# The pages link to the header, which lies elsewhere.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_DOCDIR}/include
    OUTPUT_VARIABLE from_pages_to_header)
set(header_link ${PROJECT_BINARY_DIR}/header_link)
file(MAKE_DIRECTORY ${header_link})
file(CREATE_LINK ${from_pages_to_header}/cordelbox.h ${header_link}/cordelbox.h SYMBOLIC)
install(FILES ${header_link}/cordelbox.h DESTINATION ${document_folder}/include COMPONENT Development)

# For pkg-config. The prefix is known only when it is installed.
install(CODE "
    set(version ${PROJECT_VERSION})
    set(libdir ${CMAKE_INSTALL_LIBDIR})
    set(includedir ${CMAKE_INSTALL_INCLUDEDIR})
    configure_file(\"${PROJECT_SOURCE_DIR}/cmake/cordelbox.pc.in\" \"${PROJECT_BINARY_DIR}/cordelbox.pc\" @ONLY)"
    COMPONENT Development)
install(FILES ${PROJECT_BINARY_DIR}/cordelbox.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)

# The documents lie beside the executable, so the tool has a folder of its own, and a link in the path leads there.
set(tool_folder lib/cordelctl)
install(TARGETS cordelctl DESTINATION ${tool_folder} COMPONENT Tool)
install(DIRECTORY samples/Cordelbox DESTINATION ${tool_folder} COMPONENT Tool ${sample_printers})
install(FILES samples/Cordelbox/xml/Atrium.xml samples/Cordelbox/xml/Workshop.xml samples/storage-report.json
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/samples COMPONENT Tool)

cmake_path(RELATIVE_PATH tool_folder BASE_DIRECTORY ${CMAKE_INSTALL_BINDIR} OUTPUT_VARIABLE from_path_to_tool)
set(link ${PROJECT_BINARY_DIR}/link)
file(MAKE_DIRECTORY ${link})
file(CREATE_LINK ${from_path_to_tool}/cordelctl ${link}/cordelctl SYMBOLIC)
install(PROGRAMS ${link}/cordelctl TYPE BIN COMPONENT Tool)

install(FILES tools/cordelctl/cordelctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Tool)
install(FILES tools/cordelctl/completions/cordelctl.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME cordelctl COMPONENT Tool)
install(FILES tools/cordelctl/completions/_cordelctl
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT Tool)
