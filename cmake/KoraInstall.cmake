# Where the parts go on a user's machine.

include(CMakePackageConfigHelpers)

install(TARGETS kora EXPORT KoraTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(WIN32)
    install(FILES ${KORA_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES cmake/windows-i686.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kora)
endif()
install(DIRECTORY include/kora DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KoraTargets NAMESPACE Kora:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kora)
install(FILES cmake/KoraConfig.cmake cmake/KoraModule.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kora)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KoraConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KoraConfigVersion.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kora)
