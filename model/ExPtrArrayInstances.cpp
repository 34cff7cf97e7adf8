// The pointer arrays exported from the client library, one per element type that the
// project defines (see ExPtrArrayInstances.h).
#include "ExPtrArrayInstances.h"

#include "CArrayN.h"
#include "CKPRCI__Base.h"
#include "CPDBLayerManager.h"
#include "PdbGeometry.h"
#include "PdbExtras.h"
#include "PdbObjects.h"
#include "odb/OdbRecords.h"

// The export attribute comes with the declarations in the header.

template class CExPtrArray<C2PointD*, C2PointD*>;
template class CExPtrArray<CArrayN*, CArrayN*>;
template class CExPtrArray<CArrayPointD*, CArrayPointD*>;
template class CExPtrArray<CArrayPointN*, CArrayPointN*>;
template class CExPtrArray<CGProperty*, CGProperty*>;
template class CExPtrArray<CKPRCI__Base*, CKPRCI__Base*>;
template class CExPtrArray<CLProperty*, CLProperty*>;
template class CExPtrArray<CMPoint*, CMPoint*>;
template class CExPtrArray<CNSet*, CNSet*>;
template class CExPtrArray<CODBSnt*, CODBSnt*>;
template class CExPtrArray<CODBSpecialSymbol*, CODBSpecialSymbol*>;
template class CExPtrArray<CODBcmp*, CODBcmp*>;
template class CExPtrArray<CODBcmpToe*, CODBcmpToe*>;
template class CExPtrArray<CODBcmpToeArray*, CODBcmpToeArray*>;
template class CExPtrArray<CODBdataNet*, CODBdataNet*>;
template class CExPtrArray<CODBdataNetObj*, CODBdataNetObj*>;
template class CExPtrArray<CODBdataPkg*, CODBdataPkg*>;
template class CExPtrArray<CODBdataPkgObj*, CODBdataPkgObj*>;
template class CExPtrArray<CODBdataPkgPin*, CODBdataPkgPin*>;
template class CExPtrArray<CODBlayObj*, CODBlayObj*>;
template class CExPtrArray<CODBlayer*, CODBlayer*>;
template class CExPtrArray<CODBmatrixLayer*, CODBmatrixLayer*>;
template class CExPtrArray<CODBnet*, CODBnet*>;
template class CExPtrArray<CODBnetPt*, CODBnetPt*>;
template class CExPtrArray<CODBstepRepeat*, CODBstepRepeat*>;
template class CExPtrArray<CODBstephdr*, CODBstephdr*>;
template class CExPtrArray<CPCDrawObj*, CPCDrawObj*>;
template class CExPtrArray<CPCDrawObjArray*, CPCDrawObjArray*>;
template class CExPtrArray<CPDrawObj*, CPDrawObj*>;
template class CExPtrArray<CPLay*, CPLay*>;
template class CExPtrArray<CPNet*, CPNet*>;
template class CExPtrArray<CPProperty*, CPProperty*>;
template class CExPtrArray<CPRefPin*, CPRefPin*>;
template class CExPtrArray<CPRouteDObj*, CPRouteDObj*>;
template class CExPtrArray<CPRouteNet*, CPRouteNet*>;
template class CExPtrArray<CRectD*, CRectD*>;
