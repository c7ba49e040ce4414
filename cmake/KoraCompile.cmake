# How every target of ours is compiled.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

set(KORA_SYSTEM_LIBRARIES "")
if(WIN32)
    # Nothing newer than Windows XP is linked statically; what newer systems offer is bound at run time.
    set(KORA_SYSTEM_LIBRARIES user32 gdi32 advapi32 shell32 comdlg32 ole32 version)
else()
    set(KORA_SYSTEM_LIBRARIES ${CMAKE_DL_LIBS})
endif()

function(kora_sanitize target)
    if(KORA_SANITIZERS)
        target_compile_options(${target} PRIVATE -fsanitize=${KORA_SANITIZERS} -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${KORA_SANITIZERS})
    endif()
endfunction()

function(kora_compile_options target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
        $<$<BOOL:${KORA_WARNINGS_AS_ERRORS}>:-Werror>)
    if(NOT WIN32)
        # Calls within the library stay within it, as they do in a DLL.
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    else()
        target_compile_definitions(${target} PRIVATE _WIN32_WINNT=0x0501 WINVER=0x0501 _WIN32_IE=0x0600)
    endif()
    kora_sanitize(${target})
endfunction()

# The compiler's own run-time libraries are shared, so that exceptions and strings cross from modules to the library;
# on Windows they stand beside the programs.
if(WIN32)
    foreach(library libstdc++-6.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
            OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT EXISTS ${path})
            set(path /usr/i686-w64-mingw32/lib/${library})
        endif()
        list(APPEND KORA_RUNTIME_LIBRARIES ${path})
    endforeach()
    file(COPY ${KORA_RUNTIME_LIBRARIES} DESTINATION ${PROJECT_BINARY_DIR}/bin)
endif()
