# The same sources give the same bytes, wherever they are built: no path of the build gets into what is shipped. Debug
# builds keep their paths, since debuggers look for sources there.

add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
