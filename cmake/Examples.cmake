# Compiles every example of the headers' comments, the README and the guide, every warning an error.

function(kelvane_compile_examples)
  file(GLOB_RECURSE documents CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/Sources/*.h"
       "${PROJECT_SOURCE_DIR}/Documentation/*.md")
  set(script "${PROJECT_SOURCE_DIR}/cmake/Examples.py")
  set(source "${PROJECT_BINARY_DIR}/Examples.cpp")
  add_custom_command(
    OUTPUT "${source}"
    COMMAND Python3::Interpreter "${script}" "${PROJECT_SOURCE_DIR}" "${source}" $<$<BOOL:${KELVANE_BUILD_QT}>:--qt>
    DEPENDS "${script}" "${PROJECT_SOURCE_DIR}/README.md" ${documents}
    COMMENT "Collecting examples"
    VERBATIM)

  add_library(Examples OBJECT "${source}")
  target_include_directories(Examples PRIVATE "${PROJECT_SOURCE_DIR}/cmake")
  target_link_libraries(Examples PRIVATE KelvaneFoundation::Foundation)
  if(KELVANE_BUILD_QT)
    target_link_libraries(Examples PRIVATE KelvaneFoundation::Qt Qt6::Widgets)
  endif()
  set_target_properties(Examples PROPERTIES CXX_STANDARD 20)
  kelvane_warnings(Examples)
  # An example shows a beginning and uses not all of it; what it names may be in the context too, and its main() is none.
  target_compile_options(Examples PRIVATE -Werror -Wno-unused -Wno-unused-parameter -Wno-shadow -Wno-missing-declarations
                                          -Wno-return-type -O0 -g0)
endfunction()
