# Removes what the last `cmake --install` of a build tree put in place, and the directories that it
# leaves empty: cmake -DMANIFEST=<build>/install_manifest.txt -P uninstall.cmake
#
# With DESTDIR in the environment, what was installed below it. Files that are gone already are no
# error; directories that other programs use stay.
if(NOT EXISTS "${MANIFEST}")
  message(FATAL_ERROR "${MANIFEST}: nothing was installed from here; run cmake --install first")
endif()

file(STRINGS "${MANIFEST}" files ENCODING UTF-8)
set(directories "")
set(removed 0)
foreach(name IN LISTS files)
  set(file "$ENV{DESTDIR}${name}")
  if(EXISTS "${file}" OR IS_SYMLINK "${file}")
    file(REMOVE "${file}")
    if(EXISTS "${file}" OR IS_SYMLINK "${file}")
      message(FATAL_ERROR "${file}: cannot be removed; run this as the user who installed it")
    endif()
    math(EXPR removed "${removed} + 1")
  endif()
  cmake_path(GET name PARENT_PATH directory)
  while(NOT directory STREQUAL "/" AND NOT directory STREQUAL "")
    # Of the system's own directories, some are empty at first; they stay.
    if(NOT directory MATCHES "^/usr(/|$)" OR directory MATCHES "/(dxf2d|ktscene-1|KtScene)(/|$)")
      list(APPEND directories "$ENV{DESTDIR}${directory}")
    endif()
    cmake_path(GET directory PARENT_PATH directory)
  endwhile()
endforeach()

# The inner ones first.
list(REMOVE_DUPLICATES directories)
list(SORT directories ORDER DESCENDING)
foreach(directory IN LISTS directories)
  file(GLOB content LIST_DIRECTORIES true "${directory}/*")
  if(IS_DIRECTORY "${directory}" AND NOT IS_SYMLINK "${directory}" AND content STREQUAL "")
    file(REMOVE_RECURSE "${directory}")
  endif()
endforeach()
message(STATUS "Removed ${removed} files")
