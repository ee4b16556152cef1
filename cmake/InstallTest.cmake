# Installs the build tree, builds the hosts of Examples/Installed against it, by its CMake package and by pkg-config,
# moves the installation elsewhere, and expects the hosts to run there and to build there again; and the README's host,
# as the README says.
#
# Included, this defines kelvane_add_install_test(). Run as a script (cmake -DBUILD=... -P) it is the test.

if(NOT CMAKE_SCRIPT_MODE_FILE)
  function(kelvane_add_install_test)
    find_program(KELVANE_MAKE make REQUIRED)
    find_package(PkgConfig REQUIRED)
    add_test(
      NAME Install
      COMMAND "${CMAKE_COMMAND}" "-DBUILD=${PROJECT_BINARY_DIR}" "-DSOURCE=${PROJECT_SOURCE_DIR}" "-DLIBDIR=${CMAKE_INSTALL_LIBDIR}"
              "-DCXX=${CMAKE_CXX_COMPILER}" "-DMAKE=${KELVANE_MAKE}" "-DPKG_CONFIG=${PKG_CONFIG_EXECUTABLE}" "-DQT=${KELVANE_BUILD_QT}"
              -P "${CMAKE_CURRENT_FUNCTION_LIST_FILE}")
    set_tests_properties(Install PROPERTIES TIMEOUT 600 COST 500 RESOURCE_LOCK install)
  endfunction()
  return()
endif()

set(scratch "${BUILD}/InstallTest")
set(hosts "${SOURCE}/Examples/Installed")

macro(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${status}:\n${output}${errors}")
  endif()
endmacro()

# Qt is kept from the first host, as on a machine that has none.
function(build_with_cmake host prefix)
  set(options)
  if(host STREQUAL "Colour")
    set(options -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON)
  endif()
  set(build "${scratch}/cmake/${host}")
  file(REMOVE_RECURSE "${build}")
  run("${CMAKE_COMMAND}" -S "${hosts}/${host}" -B "${build}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_PREFIX_PATH=${prefix}" ${options})
  run("${CMAKE_COMMAND}" --build "${build}")
endfunction()

function(build_with_pkg_config host prefix)
  set(build "${scratch}/pkg-config/${host}")
  file(REMOVE_RECURSE "${build}")
  file(MAKE_DIRECTORY "${build}")
  run("${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig" "PATH=$ENV{PATH}" "CXX=${CXX}"
      "${MAKE}" -C "${build}" -f "${hosts}/${host}/Makefile" "VPATH=${hosts}/${host}")
endfunction()

function(expect host prefix expected)
  foreach(kind cmake pkg-config)
    run("${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${prefix}/${LIBDIR}" QT_QPA_PLATFORM=offscreen
        "${scratch}/${kind}/${host}/${host}" ${ARGN})
    if(NOT output STREQUAL "${expected}\n")
      message(FATAL_ERROR "${kind}/${host} printed\n${output}and not\n${expected}")
    endif()
  endforeach()
endfunction()

# What leads into a build tree, or to where the installation first was, is gone on other machines.
function(expect_no_fixed_paths prefix)
  file(GLOB_RECURSE found_by "${prefix}/*.cmake" "${prefix}/*.pc")
  foreach(file IN LISTS found_by)
    file(STRINGS "${file}" lines)
    foreach(path "${SOURCE}" "${BUILD}" "${prefix}")
      string(FIND "${lines}" "${path}" place)
      if(NOT place EQUAL -1)
        message(FATAL_ERROR "${file} holds the path ${path}")
      endif()
    endforeach()
  endforeach()
endfunction()

file(REMOVE_RECURSE "${scratch}")
set(first "${scratch}/first place")
set(second "${scratch}/second/place")
run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${first}")
expect_no_fixed_paths("${first}")

set(expected_Colour "navy #000080")
set(expected_OnQt "Qt 6")
set(names Colour)
if(QT)
  list(APPEND names OnQt)
endif()
foreach(host IN LISTS names)
  build_with_cmake(${host} "${first}")
  build_with_pkg_config(${host} "${first}")
  expect(${host} "${first}" "${expected_${host}}")
endforeach()

file(MAKE_DIRECTORY "${scratch}/second")
file(RENAME "${first}" "${second}")
foreach(host IN LISTS names)
  expect(${host} "${second}" "${expected_${host}}")
endforeach()
build_with_cmake(Colour "${second}")
build_with_pkg_config(Colour "${second}")
expect(Colour "${second}" "${expected_Colour}")

# The README's first host, built by its CMakeLists.txt and by its command.
include("${SOURCE}/cmake/ReadmeHost.cmake")
set(readme "${scratch}/readme")
file(READ "${SOURCE}/README.md" text)
kelvane_first_block(cpp "${text}" code text)
kelvane_first_block(text "${text}" said text)
kelvane_first_block(cmake "${text}" lists text)
kelvane_first_block(sh "${text}" command text)
file(WRITE "${readme}/main.cpp" "${code}")
file(WRITE "${readme}/CMakeLists.txt" "${lists}")
run("${CMAKE_COMMAND}" -S "${readme}" -B "${readme}/build" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_PREFIX_PATH=${second}")
run("${CMAKE_COMMAND}" --build "${readme}/build")
run("${CMAKE_COMMAND}" -E chdir "${readme}" "${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${second}/${LIBDIR}/pkgconfig"
    bash -ec "${command}")
foreach(host "${readme}/build/host" "${readme}/host")
  run("${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${second}/${LIBDIR}" "${host}")
  if(NOT output STREQUAL said)
    message(FATAL_ERROR "${host} printed\n${output}and not\n${said}")
  endif()
endforeach()
