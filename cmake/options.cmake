# Compiler settings shared by every target of the project's own code.
add_library(palisade_options INTERFACE)
target_compile_options(palisade_options INTERFACE -Wall -Wextra -Wshadow -Wpedantic -Wno-cast-function-type -Werror)
# GCC 12 reports copies out of bounds in short wide strings that were inlined; there are none.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(palisade_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow)
endif()
# What ships contains no path of the build machine.
target_compile_options(palisade_options INTERFACE
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)

# Size first: players download every byte, and nothing here needs much processor time.
set(CMAKE_CXX_FLAGS_RELEASE "-Os -g1 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g1")

if(PALISADE_FUZZ)
    # The HTML parser is guided and watched too.
    add_compile_options(-fsanitize=fuzzer-no-link,address)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    set(CMAKE_CXX_FLAGS_RELEASE "-O1 -g1")
endif()

if(PALISADE_HOST)
    target_compile_options(palisade_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all)
    target_link_options(palisade_options INTERFACE -fsanitize=address,undefined)
    return()
endif()

# Windows 7 is the oldest system that the library has to load on; newer functions are looked up at run time.
target_compile_definitions(palisade_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 WINVER=0x0601)
# The engine aligns the stack to four bytes only, as the system's calling conventions allow. The stack walk of a crashed
# thread needs frame pointers.
target_compile_options(palisade_options INTERFACE -mstackrealign -fno-omit-frame-pointer
    -ffunction-sections -fdata-sections)
target_link_options(palisade_options INTERFACE -static -Wl,--enable-stdcall-fixup -Wl,--gc-sections
    -Wl,--no-insert-timestamp -Wl,--nxcompat -Wl,--dynamicbase)

if(PALISADE_CHECKED)
    # No alignment checks: an argument of eight bytes is aligned to four on the engine's stack, which is harmless.
    target_compile_options(palisade_options INTERFACE
        -fsanitize=undefined -fno-sanitize=alignment -fsanitize-undefined-trap-on-error)
    target_compile_definitions(palisade_options INTERFACE _GLIBCXX_ASSERTIONS)
    # Instrumented, GCC 12 reports an overrun where a short wide literal is copied into a std::wstring.
    target_compile_options(palisade_options INTERFACE -Wno-array-bounds -Wno-stringop-overread)
endif()
