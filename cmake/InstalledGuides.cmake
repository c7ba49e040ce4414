# Run when the guides have been installed to the folder "docs" of the prefix, with the way from there to the headers.
# A link to a source that is not installed becomes plain text.
set(top $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${docs})
file(GLOB pages ${top}/README.md ${top}/docs/*.md)
foreach(page IN LISTS pages)
    file(READ ${page} text)
    set(link "\\[([^]\n]*)\\]\\((\\.\\./)?(core|fuzz|host|platform|scripts|tests|tools|cmake)(/[^) ]*)?\\)")
    string(REGEX REPLACE "${link}" "\\1" text "${text}")
    file(WRITE ${page} "${text}")
endforeach()
if(NOT headers STREQUAL "include")
    file(CREATE_LINK ${headers} ${top}/include SYMBOLIC)
endif()
