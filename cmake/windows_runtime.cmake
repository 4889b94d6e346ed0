# The libraries of the compiler that programs for Windows load; they stand beside them in the build tree
# and once installed.
set(runtime "")
foreach(library IN ITEMS libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "the compiler has no ${library}")
  endif()
  list(APPEND runtime ${file})
endforeach()
# No time of linking in the libraries: the same sources give the same bytes.
target_link_options(dxf2d_build_flags INTERFACE LINKER:--no-insert-timestamp)
file(COPY ${runtime} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
install(FILES ${runtime} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
