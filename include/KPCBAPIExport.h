/* KPCBAPI_EXPORT: what the client library exports, its functions and the classes of
 * the MFC-style types that its C++ interface takes (CString, CStringArray, CArchive,
 * CMemFile). */
#ifndef KPCBAPI_EXPORT_H
#define KPCBAPI_EXPORT_H

/* KPCBAPI_BUILDING: compiling the library itself; KPCBAPI_STATIC: linking its code
   statically (the viewer, the tools and tests built on the archives), so nothing is
   imported; neither: a client of the DLL. */
#if defined(_WIN32)
#  if defined(KPCBAPI_BUILDING)
#    define KPCBAPI_EXPORT __declspec(dllexport)
#  elif defined(KPCBAPI_STATIC)
#    define KPCBAPI_EXPORT
#  else
#    define KPCBAPI_EXPORT __declspec(dllimport)
#  endif
#else
#  define KPCBAPI_EXPORT __attribute__((visibility("default")))
#endif

#endif
