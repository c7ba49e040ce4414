include(${CMAKE_CURRENT_LIST_DIR}/KoraTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/KoraModule.cmake)
