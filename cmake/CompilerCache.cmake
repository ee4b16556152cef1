# Uses ccache where there is one and nobody chose a launcher; nothing depends on it.

find_program(KELVANE_CCACHE ccache)
mark_as_advanced(KELVANE_CCACHE)
if(KELVANE_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER AND PROJECT_IS_TOP_LEVEL)
  # Without this ccache gives up on files that use the tests' precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros
                                  "${KELVANE_CCACHE}")
endif()
