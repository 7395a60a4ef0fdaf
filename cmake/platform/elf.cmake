# Shared libraries and programs of ELF systems.

# Hardening: canaries in functions with arrays, checked C functions, indirect jumps to marked places only, and tables
# that are read-only once the program is loaded.
add_compile_options(-fstack-protector-strong)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
  add_compile_options(-fcf-protection=full)
endif()
if(NOT TESK_SANITIZE)
  add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>")
endif()
add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# A shared library that does not find all it needs fails to link, not to load. Clang's sanitizers live in the program
# alone and leave such names.
if(NOT (TESK_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
  string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,--no-undefined")
endif()

# Where programs and libraries look for shared libraries: in their own folder, in the build and installed. CMake would
# edit the path of a build when it installs, and leave room for that with empty elements, which mean the current folder:
# so there is one path for both places.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

# tesk_run_path(TARGET BUILT DESTINATION COMPONENT): the target, already in the list of what is installed, looks for the
# libraries in the folder BUILT, seen from its own in the build, and once it is installed in their folder alone.
function(tesk_run_path target built destination component)
  file(RELATIVE_PATH libraries /${destination} /${CMAKE_INSTALL_LIBDIR})
  set(installed "$ORIGIN/${libraries}")
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${built};${installed}")
  set(file "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${destination}/$<TARGET_FILE_NAME:${target}>")
  install(CODE "file(RPATH_CHANGE FILE \"${file}\" OLD_RPATH \"$ORIGIN/${built}:${installed}\" NEW_RPATH \"${installed}\")"
    COMPONENT ${component})
endfunction()
