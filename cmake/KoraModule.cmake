# kora_add_module(NAME SOURCE... [STRINGS FILE.rc])
#
# A Kora module: NAME.qzx in the tools folder. STRINGS is the resource script that holds its string table on Windows;
# elsewhere the table is compiled in by the macros of Tsk.h from the same list.
function(kora_add_module name)
    cmake_parse_arguments(PARSE_ARGV 1 module "" "STRINGS" "")
    add_library(${name} MODULE ${module_UNPARSED_ARGUMENTS})
    if(WIN32 AND module_STRINGS)
        enable_language(RC)
        target_sources(${name} PRIVATE ${module_STRINGS})
        set_source_files_properties(${module_STRINGS} PROPERTIES LANGUAGE RC)
    endif()
    target_link_libraries(${name} PRIVATE Kora::kora)
    set_target_properties(${name} PROPERTIES
        PREFIX "" SUFFIX ".qzx" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(CMAKE_RUNTIME_OUTPUT_DIRECTORY)
        set_target_properties(${name} PROPERTIES
            LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/tools)
    endif()
endfunction()
