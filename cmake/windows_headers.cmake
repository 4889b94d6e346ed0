# Libraries that are headers alone come from this machine, also for Windows. Each is linked into a
# directory of its own, since the headers of this machine's C library stand beside them.

# dxf2d_use_header_library(<target> <name>): makes <target> the library whose headers are at
# /usr/include/<name>.
function(dxf2d_use_header_library target name)
  if(NOT EXISTS /usr/include/${name})
    message(FATAL_ERROR "/usr/include/${name} is missing; run scripts/install-packages build")
  endif()
  set(view ${PROJECT_BINARY_DIR}/headers/${name})
  file(MAKE_DIRECTORY ${view})
  file(CREATE_LINK /usr/include/${name} ${view}/${name} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${view})
  # What find_package would find on this machine is for this machine: this is found already.
  string(REGEX REPLACE "::.*" "" package ${target})
  file(WRITE ${view}/${package}Config.cmake "")
  file(WRITE ${view}/${package}ConfigVersion.cmake "set(PACKAGE_VERSION_COMPATIBLE TRUE)\n")
  set(${package}_DIR ${view} CACHE PATH "" FORCE)
endfunction()

dxf2d_use_header_library(nlohmann_json::nlohmann_json nlohmann)
