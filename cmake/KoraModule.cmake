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
