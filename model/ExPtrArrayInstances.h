// The element types whose pointer arrays the client library exports. Each array is
// instantiated once, in ExPtrArrayInstances.cpp; these declarations keep every other
// source from making a private copy of it.
#pragma once

#include "CExPtrArray.h"
#include "KPCBAPI.h"

class C2PointD;
class CArrayN;
class CArrayPointD;
class CArrayPointN;
class CGProperty;
class CKPRCI__Base;
class CLProperty;
class CMPoint;
class CNSet;
class CODBSnt;
class CODBSpecialSymbol;
class CODBcmp;
class CODBcmpToe;
class CODBcmpToeArray;
class CODBdataNet;
class CODBdataNetObj;
class CODBdataPkg;
class CODBdataPkgObj;
class CODBdataPkgPin;
class CODBlayObj;
class CODBlayer;
class CODBmatrixLayer;
class CODBnet;
class CODBnetPt;
class CODBstepRepeat;
class CODBstephdr;
class CPCDrawObj;
class CPCDrawObjArray;
class CPDrawObj;
class CPLay;
class CPNet;
class CPProperty;
class CPRefPin;
class CPRouteDObj;
class CPRouteNet;
class CRectD;

extern template class KPCBAPI_EXPORT CExPtrArray<C2PointD*, C2PointD*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CArrayN*, CArrayN*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CArrayPointD*, CArrayPointD*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CArrayPointN*, CArrayPointN*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CGProperty*, CGProperty*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CKPRCI__Base*, CKPRCI__Base*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CLProperty*, CLProperty*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CMPoint*, CMPoint*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CNSet*, CNSet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBSnt*, CODBSnt*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBSpecialSymbol*, CODBSpecialSymbol*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBcmp*, CODBcmp*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBcmpToe*, CODBcmpToe*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBcmpToeArray*, CODBcmpToeArray*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBdataNet*, CODBdataNet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBdataNetObj*, CODBdataNetObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBdataPkg*, CODBdataPkg*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBdataPkgObj*, CODBdataPkgObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBdataPkgPin*, CODBdataPkgPin*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBlayObj*, CODBlayObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBlayer*, CODBlayer*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBmatrixLayer*, CODBmatrixLayer*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBnet*, CODBnet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBnetPt*, CODBnetPt*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBstepRepeat*, CODBstepRepeat*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CODBstephdr*, CODBstephdr*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPCDrawObj*, CPCDrawObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPCDrawObjArray*, CPCDrawObjArray*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPDrawObj*, CPDrawObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPLay*, CPLay*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPNet*, CPNet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPProperty*, CPProperty*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPRefPin*, CPRefPin*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPRouteDObj*, CPRouteDObj*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CPRouteNet*, CPRouteNet*>;
extern template class KPCBAPI_EXPORT CExPtrArray<CRectD*, CRectD*>;
