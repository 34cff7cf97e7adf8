# An import library that the MSVC linker accepts for the C exports: the linker writes
# the DLL's full export list as a .def, the C names are kept (the C++ overloads'
# names follow the MinGW C++ ABI, which MSVC callers cannot use), and dlltool turns
# that into lib/msvc/KPCBAPIDLL.lib, installed as lib/KPCBAPIDLL.lib.
find_program(KPCB_DLLTOOL NAMES ${CMAKE_DLLTOOL} x86_64-w64-mingw32-dlltool dlltool REQUIRED)
set(KPCB_FULL_DEF ${CMAKE_BINARY_DIR}/lib/KPCBAPIDLL-all.def)
set(KPCB_C_DEF ${CMAKE_BINARY_DIR}/lib/msvc/KPCBAPIDLL.def)
set(KPCB_MSVC_IMPORT ${CMAKE_BINARY_DIR}/lib/msvc/KPCBAPIDLL.lib)
target_link_options(KPCBAPIDLL PRIVATE -Wl,--output-def,${KPCB_FULL_DEF})
add_custom_command(OUTPUT ${KPCB_MSVC_IMPORT} ${KPCB_C_DEF}
  COMMAND ${CMAKE_COMMAND} -DIN=${KPCB_FULL_DEF} -DOUT=${KPCB_C_DEF} -P ${CMAKE_CURRENT_LIST_DIR}/c_exports_def.cmake
  COMMAND ${KPCB_DLLTOOL} --input-def ${KPCB_C_DEF} --dllname KPCBAPIDLL.dll --output-lib ${KPCB_MSVC_IMPORT}
  DEPENDS KPCBAPIDLL $<TARGET_FILE:KPCBAPIDLL> ${CMAKE_CURRENT_LIST_DIR}/c_exports_def.cmake
  VERBATIM)
add_custom_target(KPCBAPIDLL_msvc_import ALL DEPENDS ${KPCB_MSVC_IMPORT})
install(FILES ${KPCB_MSVC_IMPORT} ${KPCB_C_DEF} DESTINATION ${CMAKE_INSTALL_LIBDIR})

# The check: a small C caller links against it with clang's MSVC target and lld-link.
find_program(KPCB_CLANG clang)
find_program(KPCB_LLD_LINK lld-link)
if(KPCB_BUILD_TESTS AND KPCB_CLANG AND KPCB_LLD_LINK)
  add_test(NAME msvc_import_library
    COMMAND ${CMAKE_COMMAND} -DCLANG=${KPCB_CLANG} -DLLD_LINK=${KPCB_LLD_LINK} -DIMPORT=${KPCB_MSVC_IMPORT}
            -DSOURCE=${PROJECT_SOURCE_DIR}/examples/msvc/caller.c -DWORK_DIR=${CMAKE_BINARY_DIR}/msvc-check
            -P ${CMAKE_CURRENT_LIST_DIR}/check_msvc_import.cmake)
endif()
