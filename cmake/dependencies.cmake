# Header-only libraries of the system: the cross compiler is given these headers alone, not the whole of /usr/include.
add_library(palisade_headers INTERFACE)
set(headers ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${headers})
foreach(header cpptoml.h nlohmann fmt)
    if(NOT EXISTS /usr/include/${header})
        message(FATAL_ERROR "/usr/include/${header} is missing: run harness/machine/setup.sh")
    endif()
    file(CREATE_LINK /usr/include/${header} ${headers}/${header} SYMBOLIC)
endforeach()
target_include_directories(palisade_headers SYSTEM INTERFACE ${headers})

add_library(palisade_fmt STATIC cmake/fmt.cpp)
target_link_libraries(palisade_fmt PUBLIC palisade_headers PRIVATE palisade_options)

add_library(palisade_system_libraries INTERFACE)
target_link_libraries(palisade_system_libraries INTERFACE
    advapi32 gdi32 ole32 oleaut32 shell32 shlwapi user32 uuid rpcrt4 wbemuuid z)
link_delayed(palisade_system_libraries bcrypt comctl32 crypt32 gdiplus version wininet)

# The test framework, built from its sources with the compiler in use.
set(INSTALL_GTEST OFF CACHE INTERNAL "")
set(gtest_disable_pthreads OFF CACHE INTERNAL "")
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
