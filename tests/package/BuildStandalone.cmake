# Installs the package into a folder of its own, copies the module's folder out, and builds it there.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
file(COPY ${MODULE}/ DESTINATION ${WORK}/source)
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
set(compiler -D CMAKE_CXX_COMPILER=${COMPILER})
if(TOOLCHAIN)
    set(compiler -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -D CMAKE_FIND_ROOT_PATH=${WORK}/prefix)
endif()
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${WORK}/source -B ${WORK}/build ${compiler}
    -D CMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/build)

file(GLOB_RECURSE built ${WORK}/build/*.qzx)
if(NOT built)
    message(FATAL_ERROR "no module was built")
endif()
