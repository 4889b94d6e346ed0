# Rooms: the folders that the system is divided into. Each is a target that sees the headers of its
# own folder and of the rooms that it uses, and no others.

# dxf2d_add_room(<target> FOLDER <folder> [SHARED | STATIC | OBJECT | INTERFACE | EXECUTABLE]
#                [SOURCES <file>...] [USES <room target>...] [LIBRARIES <library>...])
#
# Adds the room at <folder> (relative to the project, as in #include "<folder>/file.h"). USES are the
# rooms whose headers it may include; LIBRARIES are other libraries that its headers or sources need.
# Both are linked publicly, since the headers of a room include those of the rooms that it uses. The
# folder and what it uses are appended to the global property DXF2D_ROOMS as "folder:used folder,...",
# which the layering test compares with the sources and with docs/architecture.md.
function(dxf2d_add_room target)
  cmake_parse_arguments(PARSE_ARGV 1 room "SHARED;STATIC;OBJECT;INTERFACE;EXECUTABLE" "FOLDER"
                        "SOURCES;USES;LIBRARIES")
  set(kind STATIC)
  set(scope PUBLIC)
  foreach(candidate SHARED OBJECT INTERFACE EXECUTABLE)
    if(room_${candidate})
      set(kind ${candidate})
    endif()
  endforeach()
  if(kind STREQUAL INTERFACE)
    set(scope INTERFACE)
  endif()
  if(kind STREQUAL EXECUTABLE)
    add_executable(${target} ${room_SOURCES})
  else()
    add_library(${target} ${kind} ${room_SOURCES})
  endif()
  if(WIN32 AND kind STREQUAL SHARED)
    # Libraries of Windows are not called lib...; import libraries of gcc are.
    set_target_properties(${target} PROPERTIES PREFIX "")
  endif()

  # A directory that holds nothing but a link to the folder, so that a room is found under its full
  # name and its neighbors are not found at all.
  set(view ${PROJECT_BINARY_DIR}/rooms/${target})
  cmake_path(GET room_FOLDER PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${room_FOLDER} ${view}/${room_FOLDER} SYMBOLIC)
  target_include_directories(${target} ${scope} $<BUILD_INTERFACE:${view}>)
  target_link_libraries(${target} ${scope} ${room_USES} ${room_LIBRARIES})
  if(NOT kind STREQUAL INTERFACE)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:dxf2d_build_flags>)
  endif()

  set(used "")
  foreach(other ${room_USES})
    get_target_property(folder ${other} DXF2D_ROOM_FOLDER)
    if(NOT folder)
      message(FATAL_ERROR "${target} uses ${other}, which is not a room")
    endif()
    list(APPEND used ${folder})
  endforeach()
  set_target_properties(${target} PROPERTIES DXF2D_ROOM_FOLDER ${room_FOLDER})
  list(JOIN used "," used)
  set_property(GLOBAL APPEND PROPERTY DXF2D_ROOMS "${room_FOLDER}:${used}")
endfunction()

# dxf2d_version_symbols(<target> <map>): has a shared library export what the linker's version script
# says, under its versions, and nothing else.
function(dxf2d_version_symbols target map)
  if(WIN32)
    # Symbols have no versions there, and __declspec(dllexport) says what is exported.
    return()
  endif()
  target_link_options(${target} PRIVATE LINKER:--version-script=${map})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
endfunction()
