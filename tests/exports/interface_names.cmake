# The interface that callers, often of other languages, bind to by name: the 62
# plain names (one of them, KPCB_Highlight_ZoomNetSegment, takes C++ objects and is
# declared in KPCBAPI.hpp) and the ten overloads that take MFC-style types, exported
# under their decorated names with the code of those types (which C++ callers link
# to). Included by the export-table checks of each platform.

set(KPCB_PLAIN_NAMES
  KPCB_Launch KPCB_Launch_HideMode KPCB_IsRunning KPCB_Exit
  KPCB_ZoomIn KPCB_ZoomOut KPCB_ZoomFitSize KPCB_ZoomArea KPCB_RotateBoard KPCB_ViewMirror
  KPCB_ViewMirror_Clear KPCB_ViewLayer_Top KPCB_ViewLayer_Btm KPCB_ViewLayer_All
  KPCB_SetWindowPosition KPCB_SetMainTitle KPCB_Component_OnOff KPCB_Route_OnOff
  KPCB_PickingTool_OnOff KPCB_RedMark_OnOff KPCB_MiniMap_OnOff
  KPCB_Highlight KPCB_Highlight_DependentColor KPCB_Highlight_DependentColor_AllLayer
  KPCB_Highlight_SpecificLayer KPCB_Highlight_RefPin KPCB_Highlight_RefPin_Zoom
  KPCB_ZoomHighlightForSection_NetRefPin KPCB_Highlight_ZoomNetSegment
  KPCB_Highlight_SetCurrentColor KPCB_Highlight_Clear
  KPCB_Visible_Layers KPCB_Visible_Layers_Only KPCB_Visible_ECAD_Layers KPCB_Visible_ECAD_Layers_Only
  KPCB_RedMarkSave KPCB_RedMarkLoad KPCB_CallSelectedItemFromRedMark KPCB_RemoveItemFromRedMarkList
  KPCB_SetStatusForCallingRedMark KPCB_GetStatusForCallingRedMark
  KPCB_GetPinCountFromPart KPCB_GetPinCountFromReference KPCB_GetPinPitch
  KPCB_GetPinPitchFrom2PinComponent KPCB_GetReferenceCountForPlace
  KPCB_GetReferenceCountForPlaceOfPart KPCB_GetReferencePlaceStatus KPCB_GetPinListInfoOfNet_RefPin
  KPCB_PolygonMergeCreate KPCB_PolygonMergeRun KPCB_PolygonMergeDestroy
  KPCB_GetCWPolygonCount KPCB_GetCWPolygonPointCount KPCB_GetCWPolygonPointData
  KPCB_GetCWPolygonPointDataArray KPCB_GetCCWPolygonCount KPCB_GetCCWPolygonPointCount
  KPCB_GetCCWPolygonPointData KPCB_GetCCWPolygonPointDataArray
  KPCB_ExportBitmap_CurrentImage KPCB_ExportPDBAscii)

# C functions beyond the KPCB_ family that callers bind to by their plain name.
set(KPCB_OTHER_PLAIN_NAMES ExtractPdbbFromArgumentList)

include(${CMAKE_CURRENT_LIST_DIR}/report_missing.cmake)

# Fails, naming what is missing, unless every entry of required is a whole line of text.
function(kpcb_require_lines text required heading)
  set(text "\n${text}\n")
  set(missing "")
  foreach(line ${required})
    string(FIND "${text}" "\n${line}\n" at)
    if(at EQUAL -1)
      list(APPEND missing "${line}")
    endif()
  endforeach()
  kpcb_fail_if_missing("${missing}" "${heading}")
endfunction()

# Fails unless every plain name is in the list of exported names.
function(kpcb_check_plain_names exports)
  list(LENGTH KPCB_PLAIN_NAMES count)
  if(NOT count EQUAL 62)
    message(FATAL_ERROR "the list of plain names has ${count} entries, not 62")
  endif()
  string(REPLACE ";" "\n" text "${exports}")
  kpcb_require_lines("${text}" "${KPCB_PLAIN_NAMES};${KPCB_OTHER_PLAIN_NAMES}"
    "plain names missing from the export table")
  message(STATUS "all 62 plain names and ${KPCB_OTHER_PLAIN_NAMES} are exported")
endfunction()

# Fails unless every overload is a line of the demangled export names; dword is the
# spelling of DWORD there.
function(kpcb_check_overloads demangled dword)
  set(overloads
    "KPCB_Launch(CString, int)"
    "KPCB_SetZoomArea(int, double const&, double const&, double const&, double const&)"
    "KPCB_Highlight_RefPin(int, CString&, CStringArray&, ${dword}, int, int)"
    "KPCB_Highlight_Clear_Basic(int)" "KPCB_Highlight_Clear_Explorer(int)" "KPCB_Highlight_Clear_Picking(int)"
    "KPCB_Visible_Layers(int, CStringArray&, int, int)"
    "KPCB_Backup_Current_Layers(int)" "KPCB_Restore_Current_Layers(int)"
    "KPCB_Explorer(int const&, int const&, CString const&)"
    "CString::Format(char const*, ...)" "CStringArray::Serialize(CArchive&)" "vtable for CStringArray"
    "CArchive::ReadCount()" "operator<<(CArchive&, CString const&)")
  kpcb_require_lines("${demangled}" "${overloads}" "overloads (or their types' code) missing from the export table")
  message(STATUS "all 10 overloads and their types' code are exported")
endfunction()
