# What dxf2d needs for Windows and Debian has not: libraries that scripts/windows-assimp and
# scripts/windows-libraries build. DXF2D_WINDOWS_LIBRARIES lists where they are installed.
set(DXF2D_WINDOWS_LIBRARIES "" CACHE STRING "Where libraries for Windows are installed")
list(APPEND CMAKE_FIND_ROOT_PATH ${DXF2D_WINDOWS_LIBRARIES})

# Headers alone, from this machine.
dxf2d_use_header_library(CLI11::CLI11 CLI)

# dxf2d_use_windows_library(<target> HEADER <header> [FOLDER <folder>] LIBRARIES <library>...
#                           [SYSTEM <library>...] [DEFINITIONS <definition>...])
#
# Makes <target> the static libraries, which need those of the system. The directory of <header> has
# their headers; it may be a <folder> among the others.
function(dxf2d_use_windows_library target)
  cmake_parse_arguments(PARSE_ARGV 1 library "" "HEADER;FOLDER" "LIBRARIES;SYSTEM;DEFINITIONS")
  string(MAKE_C_IDENTIFIER ${target} found)
  find_path(${found}_INCLUDE ${library_HEADER} PATH_SUFFIXES ${library_FOLDER} REQUIRED)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${${found}_INCLUDE})
  target_compile_definitions(${target} INTERFACE ${library_DEFINITIONS})
  foreach(name ${library_LIBRARIES})
    find_library(${found}_${name} NAMES lib${name}.a REQUIRED)
    target_link_libraries(${target} INTERFACE ${${found}_${name}})
  endforeach()
  target_link_libraries(${target} INTERFACE z ${library_SYSTEM})
endfunction()

# As pkg-config names them.
dxf2d_use_windows_library(PkgConfig::CAIRO HEADER cairo.h FOLDER cairo
  LIBRARIES cairo pixman-1 png16 SYSTEM gdi32 msimg32 DEFINITIONS CAIRO_WIN32_STATIC_BUILD)
dxf2d_use_windows_library(PkgConfig::MINIZIP HEADER minizip/unzip.h LIBRARIES minizip)

# assimp and libz are libraries that the programs load: they stand beside them.
set(libraries "")
foreach(place ${CMAKE_FIND_ROOT_PATH})
  file(GLOB found ${place}/bin/libassimp-5.dll ${place}/lib/zlib1.dll)
  list(APPEND libraries ${found})
endforeach()
file(COPY ${libraries} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
install(FILES ${libraries} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
