# Builds and runs a program with what PACKAGE's kora.pc says.
include(${CMAKE_CURRENT_LIST_DIR}/Run.cmake)

file(WRITE ${WORK}/main.cpp "#include <kora/Utl.h>\nint main() { return UtlOS(); }\n")
set(ENV{PKG_CONFIG_LIBDIR} ${PACKAGE}/lib/pkgconfig)
run(pkg-config --exact-version=${VERSION} kora)
run(pkg-config --variable=libdir kora)
string(STRIP "${output}" folder)
run(pkg-config --cflags --libs kora)
separate_arguments(options UNIX_COMMAND "${output}")
run(${COMPILER} -std=c++20 -o ${WORK}/main ${WORK}/main.cpp ${options} -Wl,-rpath,${folder})
run(${WORK}/main)
