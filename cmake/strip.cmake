# The library that ships is stripped; its symbols are in PalisadeBootstrapper.debug in the same folder.
# Each copy would otherwise write the time of day into the header: the same sources give the same bytes.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    find_program(OBJCOPY i686-w64-mingw32-objcopy REQUIRED)
    add_custom_command(TARGET PalisadeBootstrapper POST_BUILD
        COMMAND ${OBJCOPY} --preserve-dates --only-keep-debug $<TARGET_FILE:PalisadeBootstrapper> PalisadeBootstrapper.debug
        COMMAND ${OBJCOPY} --preserve-dates --strip-all $<TARGET_FILE:PalisadeBootstrapper>
        COMMAND ${OBJCOPY} --preserve-dates --add-gnu-debuglink=PalisadeBootstrapper.debug $<TARGET_FILE:PalisadeBootstrapper>
        WORKING_DIRECTORY $<TARGET_FILE_DIR:PalisadeBootstrapper>)
endif()
