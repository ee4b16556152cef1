# KelvaneFoundation::Qt: the desktop on Qt 6 Widgets. Headers right in Sources/Qt are for hosts and show no type of Qt
# but by name; those in the folders below it are its own.

find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
find_package(JPEG REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(xcb REQUIRED IMPORTED_TARGET xcb)

file(GLOB_RECURSE qt_sources RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/Sources/Qt/*.cpp")

add_library(KelvaneFoundationQt ${qt_sources})
add_library(KelvaneFoundation::Qt ALIAS KelvaneFoundationQt)
set_target_properties(
  KelvaneFoundationQt
  PROPERTIES EXPORT_NAME Qt
             VERSION ${PROJECT_VERSION}
             SOVERSION ${KELVANE_SOVERSION}
             CXX_STANDARD 23
             CXX_VISIBILITY_PRESET hidden
             VISIBILITY_INLINES_HIDDEN ON
             POSITION_INDEPENDENT_CODE ON)
# Neither Qt's words for signals nor conversions from bytes that nobody said the encoding of.
target_compile_definitions(KelvaneFoundationQt PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
target_link_libraries(KelvaneFoundationQt PUBLIC KelvaneFoundation::Foundation PRIVATE Qt6::Widgets JPEG::JPEG PkgConfig::xcb)
kelvane_warnings(KelvaneFoundationQt)
if(NOT KELVANE_SANITIZE)
  target_link_options(KelvaneFoundationQt PRIVATE -Wl,--no-undefined)
endif()
