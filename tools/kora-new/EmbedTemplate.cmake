# cmake -D FOLDER=template -D FILES=NAME;NAME... -D SOURCE=Template.cpp -P EmbedTemplate.cmake
#
# The files of a new module as a source that defines kora::newmodule::templateFiles().
cmake_minimum_required(VERSION 3.25)

set(text "#include \"tools/kora-new/NewModule.h\"\n\nnamespace kora::newmodule {\n\n")
string(APPEND text "std::span<const TemplateFile> templateFiles() {\n    static constexpr TemplateFile files[] = {\n")
foreach(file IN LISTS FILES)
    file(READ ${FOLDER}/${file} bytes)
    string(APPEND text "{\"${file}\", R\"kora(${bytes})kora\"},\n")
endforeach()
string(APPEND text "    };\n    return files;\n}\n\n}  // namespace kora::newmodule\n")
file(WRITE ${SOURCE} "${text}")
