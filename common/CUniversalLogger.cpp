#include "CUniversalLogger.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "GCUtility.h"
#include "platform.h"

CUniversalLogger& GetUniversalLogger() {
    static CUniversalLogger logger;
    return logger;
}

bool CUniversalLogger::Init(const CString& path, int /*mode*/) {
    const CString folder = GCUtility::GetInstance().GetSegmntFromFilePath(path, 1);
    const bool ready = folder.IsEmpty() || platform::MakeDirectory(folder.str());
    std::lock_guard<std::mutex> hold(m_lock);
    m_path = path.str();
    return ready;
}

CString CUniversalLogger::GetPath() const {
    std::lock_guard<std::mutex> hold(m_lock);
    return CString(m_path);
}

void CUniversalLogger::LogLine(const char* format, ...) {
    if (!format) return;
    CString text;
    va_list args;
    va_start(args, format);
    text.FormatV(format, args);
    va_end(args);

    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const int millis = static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000);
    const std::tm local = platform::LocalTime(seconds);
    char stamp[40];
    std::strftime(stamp, sizeof(stamp), "%Y-%m-%d %H:%M:%S", &local);

    std::lock_guard<std::mutex> hold(m_lock);
    if (m_path.empty()) return;
    if (FILE* file = std::fopen(m_path.c_str(), "ab")) {
        std::fprintf(file, "%s.%03d [%d] %s\n", stamp, millis, platform::CurrentProcessId(), text.GetString());
        std::fclose(file);
    }
}
