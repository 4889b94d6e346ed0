# GoogleTest for Windows, from the sources that Debian packages.
set(sources /usr/src/googletest)
if(NOT EXISTS ${sources}/CMakeLists.txt)
  message(FATAL_ERROR "${sources} is missing; run scripts/install-packages windows")
endif()
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(${sources} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
# As find_package names it.
if(NOT TARGET GTest::gtest_main)
  add_library(GTest::gtest_main ALIAS gtest_main)
  add_library(GTest::gtest ALIAS gtest)
endif()
