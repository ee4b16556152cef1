# Sanitizers only work when all that is linked together has them, so they are set for the whole tree.

if(KELVANE_SANITIZE)
  # Whatever is found ends the program, since a test that only prints would pass.
  add_compile_options(-fsanitize=${KELVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KELVANE_SANITIZE})
endif()
