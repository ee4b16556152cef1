# Compiles each public header by itself, as a host would that includes nothing else: C++20 and not one warning.

function(kelvane_compile_headers_alone)
  file(GLOB_RECURSE headers RELATIVE "${PROJECT_SOURCE_DIR}/Sources" CONFIGURE_DEPENDS
       "${PROJECT_SOURCE_DIR}/Sources/*.h")
  list(FILTER headers EXCLUDE REGEX "^Qt/.*/") # the desktop's own, which hosts do not get

  set(units)
  foreach(header IN LISTS headers)
    set(unit "${PROJECT_BINARY_DIR}/HeadersAlone/${header}.cpp")
    # Twice, so that a missing include guard shows too. An unchanged file is not written again.
    file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
    list(APPEND units "${unit}")
  endforeach()

  add_library(HeadersAlone OBJECT ${units})
  target_link_libraries(HeadersAlone PRIVATE KelvaneFoundation::Foundation)
  set_target_properties(HeadersAlone PROPERTIES CXX_STANDARD 20)
  kelvane_warnings(HeadersAlone)
  # Nobody runs this code, so it is compiled as fast as can be. clang, with the preset fuzz, has fewer warnings of ours.
  target_compile_options(HeadersAlone PRIVATE -Wconversion -Wshadow -Werror -O0 -g0)
endfunction()
