# What CPack makes of the components: on Windows one ZIP that works wherever it is unpacked, elsewhere Debian's packages.

set(CPACK_PACKAGE_NAME kora)
set(CPACK_PACKAGE_VENDOR "Kora System Services")
set(CPACK_PACKAGE_CONTACT "Kora System Services maintainers <maintainers@kora.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "system services library of engineering-design applications")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME kora-${PROJECT_VERSION}-windows-i686)
    include(CPack)
    return()
endif()

set(about "Kora System Services offers a host and its modules sized strings,
containers, settings, paths, errors and the crash trace, timers, notifications,
geometry, sheets, messages between stations and a reader for text formats.
")
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE kora)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/bin)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Names of C++ come and go with each version, until one is promised to stay.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkora0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${about}
This package holds the library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkora-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "kora-tools (= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, g++, pkg-config")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${about}
This package holds what modules and hosts are made with: headers,
the CMake package, the guides and two sample modules.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME kora-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${about}
This package holds the programs that run modules without windows, begin new
ones, and show what a trace log says.")

include(CPack)

# Every package of Debian's has a log of its versions.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(log ${PROJECT_BINARY_DIR}/changelog.Debian)
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    file(WRITE ${log} "kora (${PROJECT_VERSION}-1) unstable; urgency=medium\n\n  * Version ${PROJECT_VERSION}.\n\n"
        " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    execute_process(COMMAND gzip -9nf ${log} COMMAND_ERROR_IS_FATAL ANY)
    foreach(component RUNTIME DEVELOPMENT TOOLS)
        string(TOLOWER ${component} lower)
        install(FILES ${log}.gz DESTINATION share/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME} COMPONENT ${lower})
    endforeach()
endif()
