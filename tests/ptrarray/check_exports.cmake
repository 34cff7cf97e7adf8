# Fails unless every exported CExPtrArray instantiation has its operations in the
# library's dynamic symbol table.
# SYMBOLS_FILE, when given, holds the demangled names to look in instead (the Windows
# export table), and INDEX_TYPE the spelling of INT_PTR there (long on ELF x86-64).
if(DEFINED SYMBOLS_FILE)
  file(READ ${SYMBOLS_FILE} symbols)
else()
  execute_process(COMMAND ${NM} -D -C --defined-only ${LIBRARY}
    OUTPUT_VARIABLE symbols RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${NM} could not read ${LIBRARY}")
  endif()
endif()
if(NOT DEFINED INDEX_TYPE)
  set(INDEX_TYPE long)
endif()
set(missing "")
foreach(type C2PointD CArrayN CArrayPointD CArrayPointN CGProperty CLProperty CMPoint CNSet CODBSnt
             CODBSpecialSymbol CODBcmp CODBcmpToe CODBcmpToeArray CODBdataNet CODBdataNetObj CODBdataPkg
             CODBdataPkgObj CODBdataPkgPin CODBlayObj CODBlayer CODBmatrixLayer CODBnet CODBnetPt CODBstepRepeat
             CODBstephdr CPCDrawObj CPCDrawObjArray CPDrawObj CPLay CPNet CPProperty CPRefPin CPRouteDObj
             CPRouteNet CKPRCI__Base CRectD)
  foreach(operation "DeleteAll()" "GetAt(${INDEX_TYPE}) const" "MoveElementTo(" "Subtract(" "RemoveDuplicatedElements()"
                    "Add_if_only_do_not_exists(" "~CExPtrArray()")
    string(FIND "${symbols}" "CExPtrArray<${type}*, ${type}*>::${operation}" at)
    if(at EQUAL -1)
      list(APPEND missing "CExPtrArray<${type}*, ${type}*>::${operation}")
    endif()
  endforeach()
endforeach()
include(${CMAKE_CURRENT_LIST_DIR}/../exports/report_missing.cmake)
kpcb_fail_if_missing("${missing}" "not exported")
message(STATUS "all pointer-array instantiations are exported")
