# What `cmake --install` puts where, and the Debian packages that `cpack` makes of it: vpc, and
# vpc-viewer, which alone needs what windows are made of.
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME vpc)

set(vpc_targets vpc vpc_platform vpc_plugin)
set_target_properties(vpc_platform PROPERTIES EXPORT_NAME platform)
set_target_properties(vpc_plugin PROPERTIES EXPORT_NAME plugin
  INSTALL_RPATH "$ORIGIN/.." LIBRARY_OUTPUT_NAME vpc_plugin)
install(TARGETS vpc vpc_platform EXPORT VpcTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS vpc_plugin EXPORT VpcTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/vpc)
if(BUILD_SHARED_LIBS)
  set_target_properties(vpc PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

# The headers that README.md tells users to start with, and those that they include; the install
# test compares the two. Everything is below one folder, so that the library's includes and its
# users' read the same.
set(vpc_include_folder ${CMAKE_INSTALL_INCLUDEDIR}/vpc)
set(vpc_headers
  core/geometry/BoxCorners.h
  core/geometry/CoordinateGrid.h
  core/geometry/VpcBoundingBoxAxisAligned.h
  core/geometry/VpcCoordinate3D.h
  core/geometry/VpcFrustumDef.h
  core/geometry/VpcInterval.h
  core/geometry/VpcLine3D.h
  core/geometry/VpcNumMathTools.h
  core/geometry/VpcPlaneDef.h
  core/geometry/VpcPoint3D.h
  core/geometry/VpcTransform3D.h
  core/geometry/VpcVector3D.h
  core/util/IoError.h
  core/util/VpcDefinitions.h
  host/GiPcColorSchemeMap.h
  host/OPMPointCloudProperties.h
  host/PcCorePointSet.h
  host/PcDbPointCloudDefImplPE.h
  host/VpcExport.h
  host/VpcPlugin.h
  host/VpcViewFacts.h
  io/FileIoFactory.h
  io/FileParentIO.h
  io/ScanAccount.h
  io/ScanRecords.h
  io/ScanSummary.h
  tree/construct/PcCorePointPrepare.h
  tree/construct/PrepareChecks.h
  tree/construct/PrepareObserver.h
  tree/construct/TreePrepareResult.h
  tree/disk/VpcDiskTreeQuerier.h
  tree/disk/offsetHeaderMemberType.h
  tree/file/NodeRecord.h
  tree/file/PointTreeHeader.h
  tree/file/PointTreeLayout.h
  tree/file/PointTreeReader.h
  tree/verify/Finding.h
  tree/verify/LinkVerifier.h
  tree/verify/TreeVerifier.h
  view/CameraView.h
  view/PcCoreProjectManager.h
  view/PcCoreVisibleNodeManager.h
  view/PointBuffers.h
  view/VisiblePointsNode.h)
foreach(header IN LISTS vpc_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES src/${header} DESTINATION ${vpc_include_folder}/${folder})
endforeach()
if(NOT VPC_HOST_SDK)
  install(DIRECTORY platform DESTINATION ${vpc_include_folder} FILES_MATCHING PATTERN "*.h")
endif()

set(vpc_package ${CMAKE_INSTALL_LIBDIR}/cmake/Vpc)
configure_package_config_file(cmake/VpcConfig.cmake.in VpcConfig.cmake
  INSTALL_DESTINATION ${vpc_package})
write_basic_package_version_file(VpcConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VpcConfig.cmake ${PROJECT_BINARY_DIR}/VpcConfigVersion.cmake
  cmake/VpcWx.cmake DESTINATION ${vpc_package})
install(EXPORT VpcTargets NAMESPACE Vpc:: DESTINATION ${vpc_package})

# Debian wants manuals and changelogs compressed.
function(vpc_install_compressed source name folder component)
  set(compressed ${PROJECT_BINARY_DIR}/${name})
  cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
  add_custom_command(OUTPUT ${compressed} COMMAND gzip -9nc ${source} > ${compressed}
    DEPENDS ${source} VERBATIM)
  add_custom_target(vpc_${name} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${folder} COMPONENT ${component})
endfunction()

if(VPC_BUILD_PROGRAM)
  file(RELATIVE_PATH vpc_libraries /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
  set_target_properties(vpc_program PROPERTIES INSTALL_RPATH "$ORIGIN/${vpc_libraries}")
  install(TARGETS vpc_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  vpc_install_compressed(apps/vpc/vpc.1 vpc.1.gz ${CMAKE_INSTALL_MANDIR}/man1 vpc)
  install(FILES apps/vpc/completion.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME vpc)
endif()
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
configure_file(cmake/debian/changelog.in changelog @ONLY)
vpc_install_compressed(${PROJECT_BINARY_DIR}/changelog changelog.gz ${CMAKE_INSTALL_DOCDIR} vpc)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(vpc_components vpc)
if(TARGET vpc_viewer)
  list(APPEND vpc_components viewer)
  set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME viewer)
  set_target_properties(vpc_viewer PROPERTIES INSTALL_RPATH "$ORIGIN/${vpc_libraries}")
  install(TARGETS vpc_viewer RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  vpc_install_compressed(apps/viewer/vpc-viewer.1 vpc-viewer.1.gz ${CMAKE_INSTALL_MANDIR}/man1 viewer)
  set(vpc_desktop ${PROJECT_SOURCE_DIR}/apps/viewer/desktop)
  install(FILES ${vpc_desktop}/vpc-viewer.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${vpc_desktop}/vpc-viewer.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
  set(vpc_icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable)
  install(FILES ${vpc_desktop}/vpc-viewer.svg DESTINATION ${vpc_icons}/apps)
  foreach(type tree session)
    install(FILES ${vpc_desktop}/vpc-viewer.svg DESTINATION ${vpc_icons}/mimetypes
      RENAME application-x-vpc-${type}.svg)
  endforeach()
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/vpc-viewer)
endif()

if(PROJECT_IS_TOP_LEVEL)
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_COMPONENTS_ALL ${vpc_components})
  set(CPACK_COMPONENTS_GROUPING IGNORE)
  set(CPACK_PACKAGE_CONTACT "vpc developers <developers@vpc.invalid>")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_STRIP_FILES ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
  # Each package has a summary of its own, the first line of its description.
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

  set(CPACK_DEBIAN_VPC_PACKAGE_NAME vpc)
  set(CPACK_DEBIAN_VPC_DESCRIPTION
"${PROJECT_DESCRIPTION}
Turns laser scans (LAS, PTS, PTX) into point tree files, and shows the part of
one that a view needs: as a library and plug-in for CAD hosts and as the
program vpc.")
  # What find_package(Vpc) needs beside this package.
  set(CPACK_DEBIAN_VPC_PACKAGE_SUGGESTS "cmake, g++, libwxgtk3.2-dev, vpc-viewer")
  set(CPACK_DEBIAN_VPC_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

  set(CPACK_DEBIAN_VIEWER_PACKAGE_NAME vpc-viewer)
  set(CPACK_DEBIAN_VIEWER_DESCRIPTION
"Desktop viewer for point clouds
Shows point tree files in a window, where they are cut open, picked, measured
and coloured. Prepares laser scans (LAS, PTS, PTX) first.")
  set(CPACK_COMPONENT_VIEWER_DEPENDS vpc)
  # What is only loaded at run time.
  set(CPACK_DEBIAN_VIEWER_PACKAGE_DEPENDS libegl1)
  include(CPack)
endif()
