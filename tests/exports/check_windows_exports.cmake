# Fails unless the DLL's export table names every C function that KPCBAPI.h declares,
# undecorated (no leading underscore, no @N suffix), and every operation of the
# exported pointer arrays (the check that ELF builds make on the dynamic symbols).
#   cmake -DOBJDUMP=... -DCXXFILT=... -DLIBRARY=KPCBAPIDLL.dll -DHEADER=KPCBAPI.h
#         -DPTRARRAY_CHECK=.../check_exports.cmake -DWORK_DIR=... -P check_windows_exports.cmake
execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE dump RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} could not read ${LIBRARY}")
endif()

# The names of the export table: lines "\t[ n] name" after "[Ordinal/Name Pointer] Table".
string(FIND "${dump}" "[Ordinal/Name Pointer] Table" at)
if(at EQUAL -1)
  message(FATAL_ERROR "${LIBRARY} has no export table")
endif()
string(SUBSTRING "${dump}" ${at} -1 table)
string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\] [^\n]+" rows "${table}")
set(exports "")
foreach(row ${rows})
  string(REGEX REPLACE "^\n\t\\[ *[0-9]+\\] " "" name "${row}")
  list(APPEND exports "${name}")
endforeach()

# The C functions of the header: "KPCBAPI_EXPORT <type> KPCB_Name(".
file(READ ${HEADER} header)
string(REGEX MATCHALL "KPCBAPI_EXPORT[^;(]*[ *](KPCB_[A-Za-z0-9_]+) *\\(" declarations "${header}")
set(declared "")
foreach(declaration ${declarations})
  string(REGEX REPLACE ".*[ *](KPCB_[A-Za-z0-9_]+) *\\($" "\\1" name "${declaration}")
  list(APPEND declared ${name})
endforeach()
list(REMOVE_DUPLICATES declared)
list(LENGTH declared declaredCount)
if(declaredCount LESS 60)
  message(FATAL_ERROR "only ${declaredCount} C functions read from ${HEADER}: is the declaration form still understood?")
endif()

set(missing "")
set(decorated "")
foreach(name ${declared})
  list(FIND exports ${name} found)
  if(found EQUAL -1)
    list(APPEND missing ${name})
    foreach(form "_${name}" "${name}@")
      foreach(export ${exports})
        string(FIND "${export}" "${form}" hit)
        if(hit EQUAL 0)
          list(APPEND decorated ${export})
        endif()
      endforeach()
    endforeach()
  endif()
endforeach()
set(detail "")
if(decorated)
  string(REPLACE ";" "\n  " decorated "${decorated}")
  set(detail "\nexported decorated instead:\n  ${decorated}")
endif()
include(${CMAKE_CURRENT_LIST_DIR}/report_missing.cmake)
kpcb_fail_if_missing("${missing}" "not exported under their plain names" "${detail}")
message(STATUS "all ${declaredCount} C functions of ${HEADER} are exported undecorated")

# The plain names and the overloads that callers bind to, whatever the header says.
include(${CMAKE_CURRENT_LIST_DIR}/interface_names.cmake)
kpcb_check_plain_names("${exports}")

# The pointer arrays: the shared check, on the demangled export names. Their index
# type (INT_PTR) is long long on Windows x64.
string(REPLACE ";" "\n" names "${exports}")
file(WRITE ${WORK_DIR}/exports.txt "${names}\n")
execute_process(COMMAND ${CXXFILT} INPUT_FILE ${WORK_DIR}/exports.txt OUTPUT_FILE ${WORK_DIR}/exports-demangled.txt
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${CXXFILT} failed")
endif()
file(READ ${WORK_DIR}/exports-demangled.txt demangled)

# DWORD is unsigned long on Windows.
kpcb_check_overloads("${demangled}" "unsigned long")

set(SYMBOLS_FILE ${WORK_DIR}/exports-demangled.txt)
set(INDEX_TYPE "long long")
include(${PTRARRAY_CHECK})
