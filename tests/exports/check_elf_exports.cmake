# Fails unless the shared library's dynamic symbol table has the plain names and the
# overloads that callers bind to (ELF builds; the Windows build reads its export table).
#   cmake -DNM=nm -DLIBRARY=libKPCBAPIDLL.so -P check_elf_exports.cmake
foreach(form plain demangled)
  set(flags -D --defined-only)
  if(form STREQUAL "demangled")
    list(APPEND flags -C)
  endif()
  execute_process(COMMAND ${NM} ${flags} ${LIBRARY} OUTPUT_VARIABLE symbols RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${NM} could not read ${LIBRARY}")
  endif()
  # Lines "<address> <kind> <name>": keep the names, one a line.
  string(REGEX REPLACE "(^|\n)[0-9a-fA-F]* *[A-Za-z] " "\\1" ${form} "${symbols}")
endforeach()

include(${CMAKE_CURRENT_LIST_DIR}/interface_names.cmake)
string(REPLACE "\n" ";" plainList "${plain}")
kpcb_check_plain_names("${plainList}")
# DWORD is a 32-bit unsigned int here.
kpcb_check_overloads("${demangled}" "unsigned int")
