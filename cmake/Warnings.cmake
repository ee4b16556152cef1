# The one list of warnings, for every target of ours.

set(KELVANE_WARNINGS
    -Wall
    -Wextra
    -Wpedantic
    -Wconversion
    -Wshadow
    -Wcast-align
    -Wcast-qual
    -Wduplicated-cond
    -Wextra-semi
    -Wformat=2
    -Wlogical-op
    -Wmissing-declarations # a function without a header belongs in an unnamed namespace
    -Wnon-virtual-dtor
    -Wold-style-cast
    -Woverloaded-virtual
    -Wsuggest-override
    -Wundef)

# What g++ 12 reports about its own std::string and std::optional once they are inlined. The first is never right
# there; the others are shown but stop nothing.
set(KELVANE_WARNINGS_MISTAKEN -Wno-restrict -Wno-error=array-bounds -Wno-error=maybe-uninitialized
                              -Wno-error=stringop-overflow -Wno-error=stringop-overread)

# clang, which only builds the fuzzers, does not know all of these.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(KELVANE_WARNINGS -Wall -Wextra)
  set(KELVANE_WARNINGS_MISTAKEN)
endif()

function(kelvane_warnings target)
  target_compile_options(${target} PRIVATE ${KELVANE_WARNINGS} $<$<BOOL:${KELVANE_WERROR}>:-Werror>
                                           ${KELVANE_WARNINGS_MISTAKEN})
endfunction()
