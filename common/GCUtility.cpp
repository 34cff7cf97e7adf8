#include "GCUtility.h"

#include "platform.h"

namespace {
bool IsSeparator(char ch) { return ch == '/' || ch == '\\'; }

int LastSeparator(const CString& path) {
    for (int i = path.GetLength() - 1; i >= 0; --i)
        if (IsSeparator(path.GetAt(i))) return i;
    return -1;
}

CString WithoutExtension(const CString& name) {
    const int dot = name.str().find_last_of('.') == std::string::npos ? -1 : static_cast<int>(name.str().find_last_of('.'));
    return dot > 0 ? name.Left(dot) : name;
}
}  // namespace

GCUtility& GCUtility::GetInstance() {
    static GCUtility instance;
    return instance;
}

CString GCUtility::GetModuleDir(const CString&) const { return CString(platform::ModuleDirectory()); }

CString GCUtility::GetDataPath() const { return CString(platform::DataDirectory()); }

CString GCUtility::GCPathCombine(const CString& a, const CString& b, const char*, int) const {
    CString left(a), right(b);
    NormalizeSeparators(left);
    NormalizeSeparators(right);
    if (left.IsEmpty()) return right;
    if (right.IsEmpty()) return left;
    const char sep[2] = {platform::PathSeparator(), '\0'};
    while (left.GetLength() > 1 && IsSeparator(left.GetAt(left.GetLength() - 1))) left = left.Left(left.GetLength() - 1);
    right.TrimLeft("/\\");
    if (IsSeparator(left.GetAt(left.GetLength() - 1))) return left + right;
    return left + sep + right;
}

int GCUtility::DoesFileOrDirExist(const CString& path, const char* sourceFile, int line) const {
    if (platform::PathExists(path.str())) return 1;
    CString trace;
    trace.Format("DoesFileOrDirExist: no such file or folder: %s (%s:%d)", path.GetString(), sourceFile ? sourceFile : "?", line);
    platform::DebugOutput(trace);
    return 0;
}

int GCUtility::MakeDirectory(const CString& path) const { return platform::MakeDirectory(path.str()) ? 1 : 0; }

CString GCUtility::GetSegmntFromFilePath(const CString& path, int selector) const {
    const int cut = LastSeparator(path);
    switch (selector) {
    case 1:
        return cut < 0 ? CString() : path.Left(cut == 0 ? 1 : cut);
    case 2: {
        CString trimmed(path);
        while (trimmed.GetLength() > 1 && IsSeparator(trimmed.GetAt(trimmed.GetLength() - 1)))
            trimmed = trimmed.Left(trimmed.GetLength() - 1);
        const int last = LastSeparator(trimmed);
        return WithoutExtension(trimmed.Mid(last + 1));
    }
    case 3:
        return WithoutExtension(path.Mid(cut + 1));
    case 4: {
        const CString name = path.Mid(cut + 1);
        const CString stem = WithoutExtension(name);
        return name.Mid(stem.GetLength());
    }
    default:
        return path;
    }
}

void GCUtility::NormalizeSeparators(CString& path) const {
    const char own = platform::PathSeparator();
    path.Replace(own == '/' ? '\\' : '/', own);
}
