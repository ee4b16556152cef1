# The library's resources: beside the library in the build tree, in the folder for shared data once installed. The
# library knows the way from the one to the other and nothing else, so that an installation can be moved as a whole.

include(GNUInstallDirs)

file(GLOB resources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/Resources/*")
set(copied "${PROJECT_BINARY_DIR}/Resources.copied")
add_custom_command(
  OUTPUT "${copied}"
  COMMAND "${CMAKE_COMMAND}" -E copy_directory "${PROJECT_SOURCE_DIR}/Resources"
          "$<TARGET_FILE_DIR:KelvaneFoundation>/Resources"
  COMMAND "${CMAKE_COMMAND}" -E touch "${copied}"
  DEPENDS ${resources}
  COMMENT "Copying resources"
  VERBATIM)
add_custom_target(KelvaneFoundationResources DEPENDS "${copied}")
add_dependencies(KelvaneFoundation KelvaneFoundationResources)

set(installed "${CMAKE_INSTALL_FULL_DATADIR}/KelvaneFoundation")
file(RELATIVE_PATH way "${CMAKE_INSTALL_FULL_LIBDIR}" "${installed}")
set_source_files_properties("${PROJECT_SOURCE_DIR}/Sources/Platform/Foundation/NSBundle.cpp"
                            PROPERTIES COMPILE_DEFINITIONS "KELVANE_SHARED_RESOURCES=u\"${way}\"")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Resources/" DESTINATION "${CMAKE_INSTALL_DATADIR}/KelvaneFoundation")
