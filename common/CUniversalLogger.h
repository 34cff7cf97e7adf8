// The process-wide log: one line per LogLine call, appended to the file given to Init.
#pragma once

#include <mutex>
#include <string>

#include "CString.h"

class CUniversalLogger {
public:
    // Points the logger at path (its folder is created). mode 1 appends. Returns false
    // when the folder cannot be made; lines are then dropped.
    bool Init(const CString& path, int mode);
    // printf-style; a time stamp and the process id are put before the text.
    void LogLine(const char* format, ...)
        KPCB_PRINTF_LIKE(2, 3)
        ;
    CString GetPath() const;

private:
    mutable std::mutex m_lock;
    std::string m_path;
};

CUniversalLogger& GetUniversalLogger();
