# Shared libraries and programs of Windows.
set(CMAKE_SHARED_LIBRARY_PREFIX "")

# The compiler's runtime goes into each binary: nothing to ship beside it.
add_link_options(-static-libgcc -static-libstdc++)

# Hardening. No canaries: their runtime would be one more library to import.
add_compile_options(-fno-stack-protector)
add_link_options(LINKER:--dynamicbase,--nxcompat)

# Windows looks for libraries beside the program.
function(tesk_run_path)
endfunction()
