# `dxf2d inspect`: looks into plug-ins. Included by CMakeLists.txt of this folder.
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBELF REQUIRED IMPORTED_TARGET libelf)

target_sources(dxf2d_app PRIVATE
  callback_slots.cpp
  inspect_command.cpp
  inspection_scenes.cpp
  module_exports_elf.cpp)
target_link_libraries(dxf2d_app PRIVATE PkgConfig::LIBELF)
