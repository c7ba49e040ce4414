include(${CMAKE_CURRENT_LIST_DIR}/Run.cmake)
file(REMOVE_RECURSE ${PACKAGE})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${PACKAGE})
