// Common path and file helpers, reached through one process-wide instance.
#pragma once

#include "CString.h"

class GCUtility {
public:
    static GCUtility& GetInstance();

    // Folder that holds this library (or, for a program linked statically, the program).
    // moduleFileName is accepted for the library's own name and not needed to find it.
    CString GetModuleDir(const CString& moduleFileName = CString()) const;
    // The data folder: KPCB_DATA_DIR, else the system's per-user default.
    CString GetDataPath() const;
    // a, the platform's separator, then b; separators doubled at the seam are folded.
    CString GCPathCombine(const CString& a, const CString& b, const char* sourceFile = nullptr, int line = 0) const;
    // 1 when a file or folder of that name exists. sourceFile and line name the caller in traces.
    int DoesFileOrDirExist(const CString& path, const char* sourceFile = nullptr, int line = 0) const;
    // Makes the folder and its missing parents; 1 when it exists afterwards.
    int MakeDirectory(const CString& path) const;
    // One part of a path. 1: the folder (no trailing separator; empty when there is none);
    // 2: the name of the last part, file or folder, without its extension;
    // 3: the file name without its extension (empty when the path ends with a separator);
    // 4: the extension with its dot; any other selector: the path unchanged.
    // Both separators, '/' and '\', are accepted.
    CString GetSegmntFromFilePath(const CString& path, int selector) const;
    // Turns the other platform's separator into this platform's, in place.
    void NormalizeSeparators(CString& path) const;
};
