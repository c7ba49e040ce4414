# Builds, tests and loads the module NAME of FOLDER with PACKAGE alone.
include(${CMAKE_CURRENT_LIST_DIR}/Run.cmake)

file(REMOVE_RECURSE ${WORK})
if(FOLDER)
    file(COPY ${FOLDER}/ DESTINATION ${WORK}/source)
    set(tests ignore)
else()
    # kora-new writes it.
    file(MAKE_DIRECTORY ${WORK})
    file(GLOB new ${PACKAGE}/bin/kora-new*)
    run(${EMULATOR} ${new} ${NAME} --dir ${WORK})
    file(RENAME ${WORK}/${NAME} ${WORK}/source)
    set(tests error)
endif()
if(TOOLCHAIN)
    set(compiler -D CMAKE_TOOLCHAIN_FILE=${PACKAGE}/lib/cmake/Kora/windows-i686.cmake
        -D CMAKE_CROSSCOMPILING_EMULATOR=${EMULATOR})
else()
    set(compiler -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_PREFIX_PATH=${PACKAGE})
endif()
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${WORK}/source -B ${WORK}/build ${compiler})
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${CMAKE_COMMAND} -E chdir ${WORK}/build ${CMAKE_CTEST_COMMAND} --output-on-failure --no-tests=${tests})

# The host is alone with the module and an empty profile.
file(COPY ${WORK}/build/${NAME}.qzx DESTINATION ${WORK}/run/tools)
file(WRITE ${WORK}/run/ts.ini "")
file(GLOB host ${PACKAGE}/bin/kora-host*)
run(${CMAKE_COMMAND} -E env XDG_CONFIG_HOME=${WORK}/run ${CMAKE_COMMAND} -E chdir ${WORK}/run
    ${EMULATOR} ${host} --ini ts.ini --tools tools --report - --exit)
string(JSON module GET "${output}" modules 0)
string(JSON name GET "${module}" name)
string(JSON phase GET "${module}" init4 result)
if(NOT "${name} ${phase}" STREQUAL "${NAME} done")
    message(FATAL_ERROR "${NAME} is not in the report:\n${output}")
endif()
