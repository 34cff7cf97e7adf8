// The board's element types whose pointer arrays the client library exports. Each
// array is instantiated once, in ExPtrArrayInstances.cpp (the command records' array
// lives with the client library, in CommandRecordArray.cpp); these declarations keep
// every other source from making a private copy of it.
#pragma once

#include "CExPtrArray.h"
#include "KPCBAPI.h"

class C2PointD;
class CArrayN;
class CArrayPointD;
class CPDrawObj;
class CPLay;
class CPNet;
class CPRefPin;
class CPRouteDObj;
class CPRouteNet;
class CRectD;

extern template class KPCBAPI_EXPORT CExPtrArray<C2PointD*, C2PointD*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CArrayN*, CArrayN*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CArrayPointD*, CArrayPointD*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPDrawObj*, CPDrawObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPLay*, CPLay*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPNet*, CPNet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPRefPin*, CPRefPin*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPRouteDObj*, CPRouteDObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPRouteNet*, CPRouteNet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CRectD*, CRectD*>;
