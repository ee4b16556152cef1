# KelvaneFoundation::Foundation: all of Sources but the desktop on Qt, which is a library of its own.

find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(pugixml REQUIRED)
find_path(HWY_INCLUDE_DIR hwy/highway.h REQUIRED)
find_package(Fontconfig REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0)
pkg_check_modules(CURL REQUIRED IMPORTED_TARGET libcurl)

file(GLOB_RECURSE sources RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/Sources/*.cpp")
list(FILTER sources EXCLUDE REGEX "^Sources/Qt/")

# Before 1.0 every minor version may change what hosts were linked to, after that only a major one.
set(KELVANE_SOVERSION ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(KELVANE_SOVERSION 0.${PROJECT_VERSION_MINOR})
endif()

add_library(KelvaneFoundation ${sources})
add_library(KelvaneFoundation::Foundation ALIAS KelvaneFoundation)
set_target_properties(
  KelvaneFoundation
  PROPERTIES EXPORT_NAME Foundation
             VERSION ${PROJECT_VERSION}
             SOVERSION ${KELVANE_SOVERSION}
             CXX_STANDARD 23 # our own bodies; hosts need no more than the headers do
             CXX_VISIBILITY_PRESET hidden
             VISIBILITY_INLINES_HIDDEN ON
             POSITION_INDEPENDENT_CODE ON)
target_compile_features(KelvaneFoundation PUBLIC cxx_std_20)
target_include_directories(KelvaneFoundation PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/Sources>")
target_link_libraries(KelvaneFoundation PRIVATE ICU::uc ICU::i18n pugixml::pugixml Fontconfig::Fontconfig
                                                PkgConfig::GIO PkgConfig::CURL)
# Highway's headers alone: VectorTargets.cpp says why its library is not linked. VBMI2 is worth its own copy of the loops.
target_include_directories(KelvaneFoundation SYSTEM PRIVATE "${HWY_INCLUDE_DIR}")
target_compile_definitions(KelvaneFoundation PRIVATE HWY_WANT_AVX3_DL)
kelvane_warnings(KelvaneFoundation)

# A forgotten body is to fail here and not in the host. Sanitizers leave their run-time to the program, hence the
# exception.
if(NOT KELVANE_SANITIZE)
  target_link_options(KelvaneFoundation PRIVATE -Wl,--no-undefined)
endif()

include(Resources)
