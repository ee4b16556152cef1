# What hosts find once the library is installed: the libraries, their headers below include/KelvaneFoundation, a CMake
# package with the components Foundation and Qt, and pkg-config files. Every path in them leads from their own place, so
# an installation can be moved as a whole. Resources.cmake installs the resources.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KelvaneFoundation")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/KelvaneFoundation")
file(RELATIVE_PATH KELVANE_PREFIX_FROM_PKGCONFIG "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" KELVANE_PREFIX_FROM_PKGCONFIG "${KELVANE_PREFIX_FROM_PKGCONFIG}")

# What a host of the static libraries links besides; the shared ones bring it themselves, and a host needs none of it.
set(KELVANE_REQUIRES "")
set(KELVANE_QT_REQUIRES "")
if(NOT BUILD_SHARED_LIBS)
  set(KELVANE_REQUIRES "icu-i18n, icu-uc, pugixml, fontconfig, gio-2.0, libcurl")
  set(KELVANE_QT_REQUIRES ", Qt6Widgets, libjpeg, xcb")
endif()

# kelvane_install(TARGET COMPONENT): the library and what finds it.
function(kelvane_install target component)
  target_include_directories(${target} PUBLIC "$<INSTALL_INTERFACE:${header_dir}>")
  # Found from each other, wherever the two stand.
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_RPATH_USE_ORIGIN ON)
  install(TARGETS ${target} EXPORT KelvaneFoundation${component})
  install(EXPORT KelvaneFoundation${component} NAMESPACE KelvaneFoundation:: DESTINATION "${package_dir}")
endfunction()

kelvane_install(KelvaneFoundation Foundation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Sources/" DESTINATION "${header_dir}"
        FILES_MATCHING PATTERN "*.h" PATTERN "Sources/Qt" EXCLUDE)
configure_file("${CMAKE_CURRENT_LIST_DIR}/KelvaneFoundation.pc.in" KelvaneFoundation.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/KelvaneFoundation.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(KELVANE_BUILD_QT)
  kelvane_install(KelvaneFoundationQt Qt)
  file(GLOB qt_headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/Sources/Qt/*.h")
  install(FILES ${qt_headers} DESTINATION "${header_dir}/Qt")
  configure_file("${CMAKE_CURRENT_LIST_DIR}/KelvaneFoundation-Qt.pc.in" KelvaneFoundation-Qt.pc @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/KelvaneFoundation-Qt.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endif()

# The example only on demand: cmake --install build/release --component Notebook.
if(TARGET Notebook)
  file(RELATIVE_PATH way_to_libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(Notebook PROPERTIES INSTALL_RPATH "$ORIGIN/${way_to_libraries}" BUILD_RPATH_USE_ORIGIN ON)
  install(TARGETS Notebook COMPONENT Notebook EXCLUDE_FROM_ALL)
endif()

# Documentation/Versions.md says what a version promises: before 1.0 a new minor one may break what hosts rely on.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(compatible SameMinorVersion)
else()
  set(compatible SameMajorVersion)
endif()
write_basic_package_version_file(KelvaneFoundationConfigVersion.cmake COMPATIBILITY ${compatible})
configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/KelvaneFoundationConfig.cmake.in" KelvaneFoundationConfig.cmake
  INSTALL_DESTINATION "${package_dir}" NO_CHECK_REQUIRED_COMPONENTS_MACRO)
install(FILES "${PROJECT_BINARY_DIR}/KelvaneFoundationConfig.cmake"
              "${PROJECT_BINARY_DIR}/KelvaneFoundationConfigVersion.cmake" DESTINATION "${package_dir}")
