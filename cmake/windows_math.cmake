# sin and cos of Windows's own C library. mingw has others in their place, which take pi for shorter
# than it is: cos of a quarter turn is wrong from its fifth digit on, and a large cylinder shows that.
set(math_library ${PROJECT_BINARY_DIR}/libwindows_math.a)
if(NOT EXISTS ${math_library})
  file(WRITE ${PROJECT_BINARY_DIR}/windows_math.def "LIBRARY msvcrt.dll\nEXPORTS\n  cos\n  sin\n")
  execute_process(
    COMMAND ${CMAKE_DLLTOOL} --input-def ${PROJECT_BINARY_DIR}/windows_math.def
      --output-lib ${math_library}
    COMMAND_ERROR_IS_FATAL ANY)
endif()
# Of every target: it stands before the libraries that the compiler adds.
target_link_libraries(dxf2d_build_flags INTERFACE $<BUILD_INTERFACE:${math_library}>)
# Otherwise the compiler makes one call of mingw's sincos of both.
target_compile_options(dxf2d_build_flags INTERFACE -fno-builtin-sin -fno-builtin-cos)
