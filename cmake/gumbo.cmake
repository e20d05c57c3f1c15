# The HTML parser behind marked-up text, from its sources with the compiler in use.
set(gumbo ${PROJECT_SOURCE_DIR}/cmake/gumbo/node_modules/gumbo-parser/deps/gumbo-parser/src)
if(NOT EXISTS ${gumbo}/gumbo.h)
    message(FATAL_ERROR "The sources of the HTML parser are missing: run harness/machine/setup.sh")
endif()
file(GLOB gumbo_sources ${gumbo}/*.c)
add_library(palisade_gumbo STATIC ${gumbo_sources})
target_include_directories(palisade_gumbo SYSTEM PUBLIC ${gumbo})
# Not ours to warn about. What its memory is taken from may refuse by throwing, and then passes through its functions.
# Its reading of numeric character references overflows an int and looks at the result: -fwrapv defines it.
if(MSVC)
    # Without the c of /EHsc a C function may throw: for the parser and for the one file that calls it.
    target_include_directories(palisade_gumbo SYSTEM PUBLIC ${gumbo}/../visualc/include)
    target_compile_options(palisade_gumbo PRIVATE /w /O1 /EHs)
    set_source_files_properties(ui/toolkit/rules/GumboTree.cpp PROPERTIES COMPILE_OPTIONS /EHs)
else()
    target_compile_options(palisade_gumbo PRIVATE -std=gnu99 -w -Os -fwrapv -fexceptions -fno-omit-frame-pointer
        -ffunction-sections -fdata-sections
        -ffile-prefix-map=${gumbo}=gumbo)
endif()
