#include "CPBDParamForPDB.h"

#include "GCUtility.h"

int CPBDParamForPDB::SetDesignFilePathForExtractPDBB(const CString& path) {
    GCUtility& util = GCUtility::GetInstance();
    if (path.IsEmpty() || !util.DoesFileOrDirExist(path, __FILE__, __LINE__)) return 0;
    m_strDesignFilePath = path;
    m_strPdbbSaveFileName = util.GetSegmntFromFilePath(path, 2) + ".pdbb";
    return 1;
}
