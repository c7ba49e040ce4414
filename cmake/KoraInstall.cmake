# Where the parts go on a user's machine. There are three components: "runtime" is what programs need to run, "tools" is
# programs and theirs, which are installed where they are built, "development" is all that modules are made with.

include(CMakePackageConfigHelpers)

set(KORA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Kora)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

install(TARGETS kora EXPORT KoraTargets
    RUNTIME COMPONENT runtime
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
install(DIRECTORY include/kora TYPE INCLUDE)
install(EXPORT KoraTargets NAMESPACE Kora:: DESTINATION ${KORA_CMAKE_DIR})
install(EXPORT KoraTools NAMESPACE Kora:: DESTINATION ${KORA_CMAKE_DIR} COMPONENT tools)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KoraConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/KoraConfig.cmake cmake/KoraModule.cmake ${PROJECT_BINARY_DIR}/KoraConfigVersion.cmake
    DESTINATION ${KORA_CMAKE_DIR})

# kora.pc finds its folders from where it is itself.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE libdir)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
    OUTPUT_VARIABLE prefix)
configure_file(cmake/kora.pc.in kora.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kora.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The guides stand to each other, to the headers and to the sample modules as they do in the checkout.
if(WIN32)
    set(docs .)
else()
    set(docs ${CMAKE_INSTALL_DOCDIR})
endif()
install(FILES README.md DESTINATION ${docs})
install(DIRECTORY docs DESTINATION ${docs} PATTERN reference EXCLUDE)
install(DIRECTORY modules/netlist modules/stations DESTINATION ${docs}/modules)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/html DESTINATION ${docs} OPTIONAL)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${docs}
    OUTPUT_VARIABLE headers)
install(CODE "set(docs ${docs})\nset(headers ${headers})")
install(SCRIPT cmake/InstalledGuides.cmake)

# "kora-parts" is all of it. A tool's manual page is what the tool says of itself.
add_custom_target(kora-parts DEPENDS kora)
foreach(tool kora-host kora-new kora-trace)
    if(TARGET ${tool})
        add_dependencies(kora-parts ${tool})
        list(APPEND tools ${tool})
        list(APPEND pages ${PROJECT_BINARY_DIR}/${tool}.1.gz)
    endif()
endforeach()
if(NOT WIN32 AND NOT KORA_SANITIZERS)
    foreach(tool page IN ZIP_LISTS tools pages)
        add_custom_command(OUTPUT ${page}
            COMMAND ${tool} --help >${tool}.txt
            COMMAND awk -f ${PROJECT_SOURCE_DIR}/cmake/manual-page.awk -v version=${PROJECT_VERSION} ${tool}.txt |
                gzip -9n >${page}
            DEPENDS ${tool} cmake/manual-page.awk)
    endforeach()
    add_custom_target(kora-manual-pages ALL DEPENDS ${pages})
    add_dependencies(kora-parts kora-manual-pages)
    install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()

if(WIN32)
    install(FILES cmake/windows-i686.cmake DESTINATION ${KORA_CMAKE_DIR})
    install(PROGRAMS ${KORA_RUNTIME_LIBRARIES} TYPE BIN COMPONENT runtime)
    install(CODE "set(strip ${CMAKE_STRIP})\nset(libraries ${KORA_RUNTIME_LIBRARIES})" COMPONENT runtime)
    install(CODE [[
        if(CMAKE_INSTALL_DO_STRIP)
            list(TRANSFORM libraries REPLACE ".*/" "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/bin/")
            execute_process(COMMAND ${strip} ${libraries} COMMAND_ERROR_IS_FATAL ANY)
        endif()
    ]] COMPONENT runtime)
    foreach(package gcc-mingw-w64-i686-posix-runtime mingw-w64-i686-dev)
        install(FILES /usr/share/doc/${package}/copyright DESTINATION docs/run-time RENAME ${package}.txt
            COMPONENT runtime OPTIONAL)
    endforeach()
endif()
