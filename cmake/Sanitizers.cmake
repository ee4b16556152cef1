# Sanitizers only work when all that is linked together has them, so they are set for the whole tree.

if(KELVANE_SANITIZE)
  # Whatever is found ends the program, since a test that only prints would pass.
  add_compile_options(-fsanitize=${KELVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # Checks leave g++ unsure of what it otherwise knows to be set, as its manual says, even in the standard library.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_link_options(-fsanitize=${KELVANE_SANITIZE})
endif()
