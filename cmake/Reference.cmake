# The target `reference`: the routine reference as HTML in reference/html, where Doxygen is at hand.
find_program(TESK_DOXYGEN doxygen)
if(TESK_DOXYGEN)
  configure_file(docs/reference/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
  add_custom_target(reference
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${PROJECT_BINARY_DIR}/reference
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/reference
    COMMAND ${TESK_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
    VERBATIM)
else()
  message(STATUS "Without the routine reference: apt install doxygen")
endif()
