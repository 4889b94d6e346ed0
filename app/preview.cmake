# `dxf2d preview`: reads drawings back and draws them. Included by CMakeLists.txt of this folder.
find_package(PkgConfig REQUIRED)
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo cairo-png cairo-svg cairo-pdf)
find_package(Iconv REQUIRED)

# Files that a command leaves behind, whole or not at all; `export` writes through it, too.
add_library(dxf2d_output STATIC output_file_posix.cpp)
target_link_libraries(dxf2d_output PUBLIC dxf2d_build_flags)

add_library(dxf2d_preview STATIC
  display_palette.cpp
  drawing_nesting.cpp
  dxf_reader.cpp
  entity_groups.cpp
  entity_reader.cpp
  group_reader.cpp
  page_fit.cpp
  page_pen.cpp
  picture.cpp
  placed_extents.cpp
  preview_command.cpp
  text_decoding.cpp
  text_shaper.cpp)
target_link_libraries(dxf2d_preview
  PUBLIC dxf2d_build_flags dxf2d_output PkgConfig::CAIRO Iconv::Iconv)
if(DXF2D_SANITIZE)
  target_sources(dxf2d_preview INTERFACE ${CMAKE_CURRENT_LIST_DIR}/leak_suppressions.cpp)
endif()
