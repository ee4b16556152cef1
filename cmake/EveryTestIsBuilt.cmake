# A test that no target compiles looks just like one that passes, so a source under Tests that is in no target stops
# the configuration. Call it last in Tests/CMakeLists.txt.

function(kelvane_check_every_test_is_built)
  get_property(folders DIRECTORY PROPERTY SUBDIRECTORIES)
  set(built)
  foreach(folder IN LISTS CMAKE_CURRENT_SOURCE_DIR folders)
    get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
      get_target_property(sources ${target} SOURCES)
      foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${folder}" NORMALIZE)
        list(APPEND built "${source}")
      endforeach()
    endforeach()
  endforeach()

  set(patterns "*.cpp" "*.cc" "*.cxx" "*.c")
  list(TRANSFORM patterns PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  file(GLOB_RECURSE forgotten CONFIGURE_DEPENDS ${patterns})
  if(built)
    list(REMOVE_ITEM forgotten ${built})
  endif()
  if(forgotten)
    list(JOIN forgotten "\n  " forgotten)
    message(FATAL_ERROR "In no test program (tests are named ...Test.cpp, helpers stand in Tests/Support):\n"
                        "  ${forgotten}")
  endif()
endfunction()
