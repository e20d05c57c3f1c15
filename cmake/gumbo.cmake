# The HTML parser for marked-up text, from its sources with the compiler in use.
set(gumbo ${PROJECT_SOURCE_DIR}/cmake/gumbo/node_modules/gumbo-parser/deps/gumbo-parser/src)
if(NOT EXISTS ${gumbo}/gumbo.h)
    message(FATAL_ERROR "The sources of the HTML parser are missing: run harness/machine/setup.sh")
endif()
file(GLOB gumbo_sources ${gumbo}/*.c)
add_library(palisade_gumbo STATIC ${gumbo_sources})
target_include_directories(palisade_gumbo SYSTEM PUBLIC ${gumbo})
# Its warnings are not ours. The allocator that it is given may throw, through the parser's functions.
# The parser overflows an int when it reads numeric character references, and checks the result: -fwrapv defines that.
if(MSVC)
    # Without the c of /EHsc a C function may throw: for the parser and for the one file that calls it.
    target_include_directories(palisade_gumbo SYSTEM PUBLIC ${gumbo}/../visualc/include)
    target_compile_options(palisade_gumbo PRIVATE /w /O1 /EHs)
    set_source_files_properties(ui/toolkit/rules/GumboTree.cpp PROPERTIES COMPILE_OPTIONS /EHs)
else()
    target_compile_options(palisade_gumbo PRIVATE -std=gnu99 -w -Os -g1 -fwrapv -fexceptions -fno-omit-frame-pointer
        -ffunction-sections -fdata-sections
        -ffile-prefix-map=${gumbo}=gumbo -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
endif()
