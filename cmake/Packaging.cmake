# `cmake --install` makes a tree that works wherever it is moved to.
include(CMakePackageConfigHelpers)

set(KW_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/KWFontService17")
set(KW_PKGCONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(TARGETS KWCommon15 KWFontService17
  EXPORT KWFontService17Targets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT KWFontService17Targets NAMESPACE KW:: DESTINATION "${KW_CMAKE_DIR}")

configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/KWFontService17Config.cmake.in"
  "${PROJECT_BINARY_DIR}/package/KWFontService17Config.cmake"
  INSTALL_DESTINATION "${KW_CMAKE_DIR}"
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/package/KWFontService17ConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/package/KWFontService17Config.cmake"
  "${PROJECT_BINARY_DIR}/package/KWFontService17ConfigVersion.cmake"
  DESTINATION "${KW_CMAKE_DIR}")

# The .pc files find their tree from where they lie, like the CMake package does.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${KW_PKGCONFIG_DIR}" OUTPUT_VARIABLE KW_PC_UP)
foreach(library IN ITEMS KWCommon15 KWFontService17)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/${library}.pc.in"
    "${PROJECT_BINARY_DIR}/package/${library}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/package/${library}.pc" DESTINATION "${KW_PKGCONFIG_DIR}")
endforeach()

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
