# Kora::kora, where the programs are installed too Kora::kora-host, and kora_add_module().
include(${CMAKE_CURRENT_LIST_DIR}/KoraTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/KoraTools.cmake OPTIONAL)
include(${CMAKE_CURRENT_LIST_DIR}/KoraModule.cmake)
