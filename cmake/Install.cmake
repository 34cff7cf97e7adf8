# What `cmake --install` puts in a prefix, the package config that lets applications
# find_package(KPCBAPI) or ask pkg-config for kpcbapi, and the CPack packages.
#
#   <prefix>/include/kpcbapi/   the public headers, with the MFC-style types they use
#   <prefix>/lib/               libKPCBAPIDLL.so(.0, .0.1.0) and, beside it where launches look,
#                               the reference viewer KorbinPCB (Linux)
#   <prefix>/bin/               kpcb; on Windows also KPCBAPIDLL.dll and KorbinPCB.exe
#   <prefix>/lib/cmake/KPCBAPI/ KPCBAPIConfig.cmake, its version file, the targets
#   <prefix>/lib/pkgconfig/     kpcbapi.pc
#   <prefix>/share/doc/kpcbapi/ the documents
include(GNUInstallDirs)
# Installing (and cpack) takes what is built; the test programs need not be built first.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY TRUE)
include(CMakePackageConfigHelpers)

set(KPCB_INSTALL_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/kpcbapi)
set(KPCB_INSTALL_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KPCBAPI)
# The library starts the viewer from its own folder: on Windows that is bin/, where
# DLLs live; elsewhere lib/.
if(WIN32)
  set(KPCB_INSTALL_LIBRARY_DIR ${CMAKE_INSTALL_BINDIR})
else()
  set(KPCB_INSTALL_LIBRARY_DIR ${CMAKE_INSTALL_LIBDIR})
endif()

# The MinGW import library goes to lib/mingw/ so that lib/ keeps KPCBAPIDLL.lib for
# the MSVC linker (made below).
set(KPCB_INSTALL_IMPORT_DIR ${CMAKE_INSTALL_LIBDIR})
if(WIN32)
  set(KPCB_INSTALL_IMPORT_DIR ${CMAKE_INSTALL_LIBDIR}/mingw)
endif()

install(TARGETS KPCBAPIDLL EXPORT KPCBAPITargets
  RUNTIME DESTINATION ${KPCB_INSTALL_LIBRARY_DIR}
  LIBRARY DESTINATION ${KPCB_INSTALL_LIBRARY_DIR}
  ARCHIVE DESTINATION ${KPCB_INSTALL_IMPORT_DIR}
  INCLUDES DESTINATION ${KPCB_INSTALL_HEADER_DIR})
install(TARGETS KorbinPCB RUNTIME DESTINATION ${KPCB_INSTALL_LIBRARY_DIR})
if(TARGET kpcb)
  set_target_properties(kpcb PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS kpcb RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# The public headers and everything they include, in one folder: their own includes
# are by plain file name, so they find each other there.
install(FILES
  include/KPCBAPI.h include/KPCBAPIExport.h include/KPCBAPI.hpp include/KPCBAPIExtract.h
  include/KPCBImporterPlugin.h include/CKP_UIS__Main.h include/CPALGParamForPDB.h
  include/CPBDParamForPDB.h include/CPMentorParamForPDB.h include/CPPWSParamForPDB.h
  compat/CArray.h compat/CArchive.h compat/CException.h compat/CMemFile.h compat/CObject.h
  compat/CString.h compat/CStringArray.h compat/WinTypes.h
  common/CArrayD.h common/CArrayN.h platform/platform_types.h
  DESTINATION ${KPCB_INSTALL_HEADER_DIR})

install(EXPORT KPCBAPITargets NAMESPACE KPCBAPI:: DESTINATION ${KPCB_INSTALL_CONFIG_DIR})
file(WRITE ${CMAKE_BINARY_DIR}/KPCBAPIConfig.cmake
  "# Gives the imported target KPCBAPI::KPCBAPIDLL: the client library and its headers.\n"
  "include(\"\${CMAKE_CURRENT_LIST_DIR}/KPCBAPITargets.cmake\")\n")
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KPCBAPIConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KPCBAPIConfig.cmake ${CMAKE_BINARY_DIR}/KPCBAPIConfigVersion.cmake
  DESTINATION ${KPCB_INSTALL_CONFIG_DIR})

# pkg-config: the paths are relative to the .pc file, so a prefix may be moved (or
# unpacked under a scratch root) and still be found.
file(RELATIVE_PATH KPCB_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kpcbapi.pc.in ${CMAKE_BINARY_DIR}/kpcbapi.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kpcbapi.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES README.md docs/kpcb.md docs/python.md docs/viewer.md docs/windows.md docs/extraction.md
  docs/board-database.md docs/performance.md docs/reliability.md docs/rendering.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/MsvcImportLibrary.cmake)
endif()

# Packages: a .deb on Linux, a zip for Windows.
set(CPACK_PACKAGE_NAME kpcbapi)
set(CPACK_PACKAGE_VENDOR "KPCBAPI")
set(CPACK_PACKAGE_CONTACT "KPCBAPI developers <kpcbapi@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Client library, reference viewer and kpcb tool for the KorbinPCB viewer")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME kpcbapi-${PROJECT_VERSION}-win64)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # A shlibs file: packages built against this one depend on its soname's version.
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
endif()
include(CPack)
