# The HTML parser behind marked-up text, from its sources with the compiler in use.
set(gumbo ${PROJECT_SOURCE_DIR}/cmake/gumbo/node_modules/gumbo-parser/deps/gumbo-parser/src)
if(NOT EXISTS ${gumbo}/gumbo.h)
    message(FATAL_ERROR "The sources of the HTML parser are missing: run harness/setup/setup.sh")
endif()
file(GLOB gumbo_sources ${gumbo}/*.c)
add_library(palisade_gumbo STATIC ${gumbo_sources})
target_include_directories(palisade_gumbo SYSTEM PUBLIC ${gumbo})
# Not ours to warn about. What its memory is taken from may refuse by throwing, and then passes through its functions.
target_compile_options(palisade_gumbo PRIVATE -std=gnu99 -w -O2 -fexceptions -ffunction-sections -fdata-sections
    -ffile-prefix-map=${gumbo}=gumbo)
