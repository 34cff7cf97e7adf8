#include "Journal.h"

namespace viewer {

Journal::Journal(const std::string& path) {
    if (!path.empty()) m_file = std::fopen(path.c_str(), "a");
}

Journal::~Journal() {
    if (m_file) std::fclose(m_file);
}

void Journal::Record(int classId, const char* className, const unsigned char* payload, size_t size, const std::string& note) {
    ++m_count;
    if (!m_file) return;
    std::fprintf(m_file, "%ld\t%d\t%s\t", m_count, classId, className);
    for (size_t i = 0; i < size; ++i) std::fprintf(m_file, "%02x", payload[i]);
    std::fprintf(m_file, "\t%s\n", note.c_str());
    std::fflush(m_file);
}

void Journal::Malformed(const std::string& why) {
    ++m_count;
    if (!m_file) return;
    std::fprintf(m_file, "%ld\t-\tMALFORMED\t\t%s\n", m_count, why.c_str());
    std::fflush(m_file);
}

}  // namespace viewer
