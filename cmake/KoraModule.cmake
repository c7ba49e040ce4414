# kora_add_module(NAME SOURCE... [STRINGS HEADER LIST])
#
# A Kora module: NAME.qzx in the tools folder. HEADER defines LIST, the list of the module's strings that its sources
# hand to KORA_MODULE of Tsk.h; the resource compiler, where there is one, reads nothing else but HEADER.
function(kora_add_module name)
    cmake_parse_arguments(PARSE_ARGV 1 module "" "" "STRINGS")
    add_library(${name} MODULE ${module_UNPARSED_ARGUMENTS})
    if(WIN32 AND module_STRINGS)
        list(GET module_STRINGS 0 header)
        list(GET module_STRINGS 1 strings)
        cmake_path(ABSOLUTE_PATH header NORMALIZE)
        set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}-strings.rc)
        file(CONFIGURE OUTPUT ${script} @ONLY CONTENT [[
#include "@header@"
#define KORA_TABLE_ROW(id, text) id, text
STRINGTABLE
BEGIN
    @strings@(KORA_TABLE_ROW)
END
]])
        enable_language(RC)
        target_sources(${name} PRIVATE ${script})
        set_source_files_properties(${script} PROPERTIES LANGUAGE RC OBJECT_DEPENDS ${header})
    endif()
    target_link_libraries(${name} PRIVATE Kora::kora)
    set_target_properties(${name} PROPERTIES
        PREFIX "" SUFFIX ".qzx" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(CMAKE_RUNTIME_OUTPUT_DIRECTORY)
        set_target_properties(${name} PROPERTIES
            LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/tools)
    endif()
endfunction()

# kora_add_module_test(NAME SOURCE... MODULE TARGET)
#
# A test program, with the kit of Test.h, for the module TARGET: it knows the module's file as KORA_MODULE_FILE and is
# registered with ctest, which runs it under CMAKE_CROSSCOMPILING_EMULATOR where that is set.
function(kora_add_module_test name)
    cmake_parse_arguments(PARSE_ARGV 1 test "" "MODULE" "")
    if(NOT TARGET "${test_MODULE}")
        message(FATAL_ERROR "kora_add_module_test(${name} ...): MODULE has to name a target of kora_add_module()")
    endif()
    add_executable(${name} ${test_UNPARSED_ARGUMENTS})
    add_dependencies(${name} ${test_MODULE})
    target_link_libraries(${name} PRIVATE Kora::kora)
    target_compile_definitions(${name} PRIVATE KORA_MODULE_FILE="$<TARGET_FILE:${test_MODULE}>")
    add_test(NAME ${name} COMMAND ${name})

    # Windows looks for libraries beside the program; the package has the compiler's own in its bin folder too.
    get_target_property(imported Kora::kora IMPORTED)
    if(WIN32 AND imported)
        get_target_property(configurations Kora::kora IMPORTED_CONFIGURATIONS)
        list(GET configurations 0 configuration)
        get_target_property(library Kora::kora IMPORTED_LOCATION_${configuration})
        cmake_path(GET library PARENT_PATH folder)
        file(GLOB libraries ${library} ${folder}/libstdc++-*.dll ${folder}/libgcc_s_*.dll ${folder}/libwinpthread-*.dll)
        add_custom_command(TARGET ${name} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E copy_if_different ${libraries} $<TARGET_FILE_DIR:${name}> VERBATIM)
    endif()
endfunction()
