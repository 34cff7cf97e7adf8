# Fails naming every entry of missing under heading (and detail after them, if given);
# does nothing when missing is empty. Shared by the export-table checks.
function(kpcb_fail_if_missing missing heading)
  if(missing)
    string(REPLACE ";" "\n  " missing "${missing}")
    message(FATAL_ERROR "${heading}:\n  ${missing}${ARGN}")
  endif()
endfunction()
