# Keeps, of a linker-written .def (cmake -DIN=all.def -DOUT=c.def -P ...), the exports
# with plain C names: KPCB_* without C++ decoration.
file(STRINGS ${IN} lines)
set(out "LIBRARY \"KPCBAPIDLL.dll\"\nEXPORTS\n")
foreach(line ${lines})
  if(line MATCHES "^[ \t]*(KPCB_[A-Za-z0-9_]+)([ \t]|$)")
    string(APPEND out "    ${CMAKE_MATCH_1}\n")
  endif()
endforeach()
file(WRITE ${OUT} "${out}")
