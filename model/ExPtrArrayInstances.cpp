// The pointer arrays exported from the client library, one per element type of the
// board model (see ExPtrArrayInstances.h).
#include "ExPtrArrayInstances.h"

#include "CArrayN.h"
#include "CPDBLayerManager.h"
#include "PdbGeometry.h"
#include "PdbObjects.h"

// The export attribute comes with the declarations in the header.

template class CExPtrArray<C2PointD*, C2PointD*>;
template class CExPtrArray<CArrayN*, CArrayN*>;
template class CExPtrArray<CArrayPointD*, CArrayPointD*>;
template class CExPtrArray<CPDrawObj*, CPDrawObj*>;
template class CExPtrArray<CPLay*, CPLay*>;
template class CExPtrArray<CPNet*, CPNet*>;
template class CExPtrArray<CPRefPin*, CPRefPin*>;
template class CExPtrArray<CPRouteDObj*, CPRouteDObj*>;
template class CExPtrArray<CPRouteNet*, CPRouteNet*>;
template class CExPtrArray<CRectD*, CRectD*>;
