# The pointer arrays must be exported from the client library: read its dynamic symbol
# table (ELF builds; the Windows export table is looked at by the Windows build).
add_dependencies(test_ptrarray KPCBAPIDLL)
if(NOT WIN32 AND CMAKE_NM)
  add_test(NAME ptrarray_exports
    COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DLIBRARY=$<TARGET_FILE:KPCBAPIDLL>
            -P ${CMAKE_CURRENT_LIST_DIR}/check_exports.cmake)
endif()
