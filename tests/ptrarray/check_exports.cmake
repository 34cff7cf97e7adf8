# Fails unless every exported CExPtrArray instantiation has its operations in the
# library's dynamic symbol table.
execute_process(COMMAND ${NM} -D -C --defined-only ${LIBRARY}
  OUTPUT_VARIABLE symbols RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${NM} could not read ${LIBRARY}")
endif()
set(missing "")
foreach(type C2PointD CArrayN CArrayPointD CKPRCI__Base CPDrawObj CPLay CPNet CPRefPin CPRouteDObj CPRouteNet CRectD)
  foreach(operation "DeleteAll()" "GetAt(long) const" "MoveElementTo(" "Subtract(" "RemoveDuplicatedElements()"
                    "Add_if_only_do_not_exists(" "~CExPtrArray()")
    string(FIND "${symbols}" "CExPtrArray<${type}*, ${type}*>::${operation}" at)
    if(at EQUAL -1)
      list(APPEND missing "CExPtrArray<${type}*, ${type}*>::${operation}")
    endif()
  endforeach()
endforeach()
if(missing)
  string(REPLACE ";" "\n  " missing "${missing}")
  message(FATAL_ERROR "not exported:\n  ${missing}")
endif()
message(STATUS "all pointer-array instantiations are exported")
