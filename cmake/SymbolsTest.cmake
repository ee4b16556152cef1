# Holds what the shared libraries export against the lists in Documentation/Symbols.

function(kelvane_add_symbols_test)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  foreach(target KelvaneFoundation KelvaneFoundationQt)
    if(TARGET ${target})
      add_test(NAME Symbols.${target} COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/cmake/Symbols.py" "$<TARGET_FILE:${target}>"
                                              "${PROJECT_SOURCE_DIR}/Documentation/Symbols/${target}.txt")
    endif()
  endforeach()
endfunction()
