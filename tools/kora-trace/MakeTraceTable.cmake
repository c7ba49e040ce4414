# cmake -D HEADER=TraceCodes.h -D NAME=counter -D VERSION=1.2 -D TABLE=counter.trace [-D SOURCE=LibraryTable.cpp]
#       -P MakeTraceTable.cmake
#
# A table of names out of the header that sources take their trace codes from: as a file for people, and for kora-trace
# itself as a source that carries the same text. docs/trace.md tells the form of header and table. A file or place whose
# line cannot be read, or that says nothing of itself, ends the build.
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${HEADER} lines ENCODING UTF-8)
set(module "")
set(list "")
set(rows "")
foreach(line IN LISTS lines)
    if(line MATCHES "kModule = ([0-9]+);")
        set(module ${CMAKE_MATCH_1})
    elseif(line MATCHES "^enum (File|Place) ")
        set(list ${CMAKE_MATCH_1})
    elseif(line MATCHES "^}")
        set(list "")
    elseif(list STREQUAL "" OR line MATCHES "^ *$")
    elseif(list STREQUAL "File" AND line MATCHES "^ +(k([A-Za-z0-9]+)) = ([0-9]+), +// (.+)$")
        set(places_${CMAKE_MATCH_1} "")
        list(APPEND rows ${CMAKE_MATCH_1})
        set(head_${CMAKE_MATCH_1} "file ${CMAKE_MATCH_3} ${CMAKE_MATCH_2} ${CMAKE_MATCH_4}\n")
    elseif(list STREQUAL "Place" AND line MATCHES "^ +k[A-Za-z0-9]+ = code\\((k[A-Za-z0-9]+), 0x([0-9A-F]+)\\), +// (fault: )?(.+)$"
           AND CMAKE_MATCH_1 IN_LIST rows)
        string(FIND "${places_${CMAKE_MATCH_1}}" " 0x${CMAKE_MATCH_2} " twice)
        if(NOT twice EQUAL -1)
            message(FATAL_ERROR "${HEADER}: another place has this code already:\n${line}")
        endif()
        set(kind place)
        if(CMAKE_MATCH_3)
            set(kind fault)
        endif()
        string(APPEND places_${CMAKE_MATCH_1} "${kind} 0x${CMAKE_MATCH_2} ${CMAKE_MATCH_4}\n")
    else()
        message(FATAL_ERROR "${HEADER}: this line needs the form of the others, and words behind it:\n${line}")
    endif()
endforeach()
if(NOT module OR NOT rows)
    message(FATAL_ERROR "${HEADER} has no module number, or no files")
endif()

set(table "# Trace codes of ${NAME} ${VERSION}\nmodule ${module} ${NAME} ${VERSION}\n")
foreach(row IN LISTS rows)
    string(APPEND table "\n${head_${row}}${places_${row}}")
endforeach()
file(WRITE ${TABLE} "${table}")
if(NOT SOURCE)
    return()
endif()
file(WRITE ${SOURCE} "#include \"tools/kora-trace/Names.h\"

namespace kora::tracelog {

const char kLibraryVersion[] = \"${VERSION}\";

const char kLibraryTable[] = R\"table(${table})table\";

}  // namespace kora::tracelog
")
