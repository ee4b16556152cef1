# The README's hosts are compiled and run as tests, and have to print what the README says they print.
#
# One that opens a window is compiled only.
#
# Included, this defines kelvane_add_readme_host(). Run as a script (cmake -DHOST=... -DEXPECTED=... -P) it is the test.

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  execute_process(COMMAND "${HOST}" OUTPUT_VARIABLE actual COMMAND_ERROR_IS_FATAL ANY)
  file(READ "${EXPECTED}" expected)
  if(NOT actual STREQUAL expected)
    message(FATAL_ERROR "The host of README.md printed\n${actual}\nand not\n${expected}")
  endif()
  return()
endif()

# Sets BLOCK to the contents of the first ```LANGUAGE block of TEXT, and REST to what follows it.
function(kelvane_first_block language text block rest)
  set(opening "```${language}\n")
  string(FIND "${text}" "${opening}" start)
  if(start LESS 0)
    message(FATAL_ERROR "README.md has no block of ${language} where one is expected")
  endif()
  string(LENGTH "${opening}" length)
  math(EXPR start "${start} + ${length}")
  string(SUBSTRING "${text}" ${start} -1 text)
  string(FIND "${text}" "```" end)
  string(SUBSTRING "${text}" 0 ${end} contents)
  string(SUBSTRING "${text}" ${end} -1 text)
  set(${block} "${contents}" PARENT_SCOPE)
  set(${rest} "${text}" PARENT_SCOPE)
endfunction()

function(kelvane_add_readme_host)
  set(readme "${PROJECT_SOURCE_DIR}/README.md")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${readme}")
  file(READ "${readme}" text)
  # In the order in which they stand there.
  foreach(host ReadmeHost ReadmeClass)
    kelvane_first_block(cpp "${text}" code text)
    kelvane_first_block(text "${text}" output text)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${host}.cpp")
    set(expected "${CMAKE_CURRENT_BINARY_DIR}/${host}.txt")
    file(GENERATE OUTPUT "${expected}" CONTENT "${output}")
    file(GENERATE OUTPUT "${source}" CONTENT "${code}")

    add_executable(${host} "${source}")
    target_link_libraries(${host} PRIVATE KelvaneFoundation::Foundation)
    set_target_properties(${host} PROPERTIES CXX_STANDARD 20)
    kelvane_warnings(${host})
    add_test(NAME ${host} COMMAND "${CMAKE_COMMAND}" "-DHOST=$<TARGET_FILE:${host}>" "-DEXPECTED=${expected}" -P
                                  "${CMAKE_CURRENT_FUNCTION_LIST_FILE}")
  endforeach()

  if(KELVANE_BUILD_QT)
    kelvane_first_block(cpp "${text}" code text)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/ReadmeWindow.cpp")
    file(GENERATE OUTPUT "${source}" CONTENT "${code}")
    add_executable(ReadmeWindow "${source}")
    target_link_libraries(ReadmeWindow PRIVATE KelvaneFoundation::Qt Qt6::Widgets)
    set_target_properties(ReadmeWindow PROPERTIES CXX_STANDARD 20)
    kelvane_warnings(ReadmeWindow)
  endif()
endfunction()
