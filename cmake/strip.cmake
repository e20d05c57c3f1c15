# The library that ships is stripped; its symbols are in PalisadeBootstrapper.debug in the same folder.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    find_program(OBJCOPY i686-w64-mingw32-objcopy REQUIRED)
    add_custom_command(TARGET PalisadeBootstrapper POST_BUILD
        COMMAND ${OBJCOPY} --only-keep-debug $<TARGET_FILE:PalisadeBootstrapper> PalisadeBootstrapper.debug
        COMMAND ${OBJCOPY} --strip-all $<TARGET_FILE:PalisadeBootstrapper>
        COMMAND ${OBJCOPY} --add-gnu-debuglink=PalisadeBootstrapper.debug $<TARGET_FILE:PalisadeBootstrapper>
        WORKING_DIRECTORY $<TARGET_FILE_DIR:PalisadeBootstrapper>)
endif()
