# Kora::kora, where the programs are installed too Kora::kora-host, and kora_add_module().
include(${CMAKE_CURRENT_LIST_DIR}/KoraTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/KoraTools.cmake OPTIONAL)
include(${CMAKE_CURRENT_LIST_DIR}/KoraModule.cmake)

# There is no part of it to ask for.
foreach(component IN LISTS Kora_FIND_COMPONENTS)
    if(Kora_FIND_REQUIRED_${component})
        set(Kora_FOUND FALSE)
        set(Kora_NOT_FOUND_MESSAGE "Kora has no component \"${component}\".")
    endif()
endforeach()
