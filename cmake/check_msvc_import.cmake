# Fails unless a C caller compiled for the MSVC ABI links against the import library
# with lld-link (the stand-in here for Microsoft's linker).
#   cmake -DCLANG=clang -DLLD_LINK=lld-link -DIMPORT=KPCBAPIDLL.lib -DSOURCE=caller.c -DWORK_DIR=... -P ...
file(MAKE_DIRECTORY ${WORK_DIR})
execute_process(COMMAND ${CLANG} --target=x86_64-pc-windows-msvc -ffreestanding -c ${SOURCE} -o ${WORK_DIR}/caller.obj
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the caller did not compile")
endif()
execute_process(COMMAND ${LLD_LINK} /nologo /nodefaultlib /entry:start /subsystem:console
  ${WORK_DIR}/caller.obj ${IMPORT} /out:${WORK_DIR}/caller.exe
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "lld-link did not link the caller against ${IMPORT}:\n${out}")
endif()
message(STATUS "a caller built for the MSVC ABI links against ${IMPORT}")
