# What `cmake --install` puts where: the SDK (headers, libraries, CMake package, pkg-config file), the
# plug-in, dxf2d, and the pages. Everything finds everything else by relative paths, so that the tree
# may be moved as a whole.
#
# Components: "runtime" is what programs that stand on the SDK need (libraries, plug-in, catalogs, the
# Python module), "development" what they are built with, "tools" dxf2d, and "documentation" the pages
# and examples.
include(CMakePackageConfigHelpers)

set(KT_SCENE_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/ktscene-1)
set(KT_SCENE_PACKAGEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/KtScene)
# A folder of its own: the plug-in is loaded by path and no library to link.
set(KT_SCENE_PLUGINDIR ${CMAKE_INSTALL_LIBDIR}/dxf2d)

# Debian's python3 looks there.
set(KT_SCENE_PYTHONDIR lib/python3/dist-packages CACHE STRING
    "Where Python looks for modules, below the prefix")

# Headers: those that a host or a plug-in includes. What is not named here is not part of the SDK.
install(DIRECTORY platform DESTINATION ${KT_SCENE_INCLUDEDIR} COMPONENT development
  FILES_MATCHING
  PATTERN abi.h
  PATTERN cfile.h
  PATTERN cfile_exception.h
  PATTERN code_page.h
  PATTERN cstring.h
  PATTERN cwin_app.h
  PATTERN export.h
  PATTERN locale.h
  PATTERN number_format.h
  PATTERN path_text.h)
install(DIRECTORY ktscene DESTINATION ${KT_SCENE_INCLUDEDIR} COMPONENT development
  FILES_MATCHING
  PATTERN export.h
  PATTERN kt_callbacks.h
  PATTERN kt_decompose.h
  PATTERN kt_g.h
  PATTERN kt_geometry.h
  PATTERN kt_graphic_attribute.h
  PATTERN kt_graphic_node.h
  PATTERN kt_host.h
  PATTERN kt_label.h
  PATTERN kt_locale.h
  PATTERN kt_matrix.h
  PATTERN kt_output_file.h
  PATTERN kt_point3.h
  PATTERN kt_reserved.h
  PATTERN kt_run_code.h
  PATTERN kt_scene.h
  PATTERN kt_scene_check.h
  PATTERN kt_scene_error.h
  PATTERN kt_scene_reader.h
  PATTERN kt_scene_writer.h
  PATTERN kt_traverser.h
  PATTERN kt_traverser_error.h
  PATTERN kt_v.h
  PATTERN kt_version.h
  PATTERN ktscene_c.h
  PATTERN zu_message.h
  PATTERN po EXCLUDE)

install(TARGETS KtPlatform KtScene EXPORT KtSceneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(TARGETS dxf2d_plugin LIBRARY DESTINATION ${KT_SCENE_PLUGINDIR} COMPONENT runtime)
install(DIRECTORY python/ktscene DESTINATION ${KT_SCENE_PYTHONDIR} COMPONENT runtime
  FILES_MATCHING PATTERN *.py PATTERN py.typed PATTERN __pycache__ EXCLUDE)
set_target_properties(KtPlatform KtScene PROPERTIES INSTALL_RPATH $ORIGIN)
set_target_properties(dxf2d_plugin PROPERTIES INSTALL_RPATH $ORIGIN/..)
if(TARGET dxf2d AND WIN32)
  # Programs find libraries beside them.
  install(TARGETS dxf2d dxf2d-worker RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
elseif(TARGET dxf2d)
  file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(dxf2d PROPERTIES INSTALL_RPATH $ORIGIN/${to_libraries})
  install(TARGETS dxf2d RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  # No program for users.
  set(worker_directory ${CMAKE_INSTALL_LIBEXECDIR}/dxf2d)
  file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_PREFIX}/${worker_directory}
       ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(dxf2d-worker PROPERTIES INSTALL_RPATH $ORIGIN/${to_libraries})
  install(TARGETS dxf2d-worker dxf2d-unpack RUNTIME DESTINATION ${worker_directory}
    COMPONENT tools)
endif()

if(TARGET dxf2d_manuals)
  # Debian's zsh looks into share/zsh/vendor-completions.
  set(DXF2D_ZSH_DIRECTORY ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
      "Where zsh looks for completions, below the prefix")
  get_target_property(manuals dxf2d_manuals DXF2D_MANUALS)
  install(DIRECTORY ${manuals}/man1 ${manuals}/de DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT tools)
  install(FILES ${manuals}/dxf2d.bash RENAME dxf2d
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  install(FILES ${manuals}/_dxf2d DESTINATION ${DXF2D_ZSH_DIRECTORY} COMPONENT tools)
  install(FILES ${manuals}/dxf2d.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
endif()

if(TARGET dxf2d AND NOT WIN32)
  # Jobs on many machines; a program in a folder of others.
  install(DIRECTORY share/dxf2d/ DESTINATION ${CMAKE_INSTALL_DATADIR}/dxf2d COMPONENT tools
    USE_SOURCE_PERMISSIONS)
endif()

# find_package(KtScene)
install(EXPORT KtSceneTargets NAMESPACE KtScene:: DESTINATION ${KT_SCENE_PACKAGEDIR}
  COMPONENT development)
set(plugin_file ${KT_SCENE_PLUGINDIR}/dxf2d_plugin${CMAKE_SHARED_MODULE_SUFFIX})
configure_package_config_file(cmake/KtSceneConfig.cmake.in ${PROJECT_BINARY_DIR}/KtSceneConfig.cmake
  INSTALL_DESTINATION ${KT_SCENE_PACKAGEDIR}
  PATH_VARS plugin_file
  NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KtSceneConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/KtSceneConfig.cmake
  ${PROJECT_BINARY_DIR}/KtSceneConfigVersion.cmake
  DESTINATION ${KT_SCENE_PACKAGEDIR} COMPONENT development)

# pkg-config ktscene
file(RELATIVE_PATH to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
# Without a slash at the end, which would give paths such as ..//lib.
string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
configure_file(cmake/ktscene.pc.in ktscene.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ktscene.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)

# cmake --build <build> --target uninstall
add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -DMANIFEST=${PROJECT_BINARY_DIR}/install_manifest.txt
    -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
  COMMENT "Removing what was installed" VERBATIM)
