#include "RedMarkFile.h"

#include <fstream>
#include <sstream>

#include "CArchive.h"

namespace viewer {
namespace {

const char kTextHeader[] = "KPCB RED MARKS 1";
const char kBinaryMagic[4] = {'K', 'P', 'R', 'M'};

std::string Escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else out += c;
    }
    return out;
}

std::string Unescape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            const char next = text[++i];
            out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
        } else {
            out += text[i];
        }
    }
    return out;
}

bool LoadText(std::istream& in, std::vector<RedMark>& marks, std::string& why) {
    std::string line;
    std::getline(in, line);
    RedMark mark;
    bool haveTitle = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        if (line.rfind("TITLE ", 0) == 0) {
            if (haveTitle) marks.push_back(mark);
            mark = RedMark{Unescape(line.substr(6)), ""};
            haveTitle = true;
        } else if (line.rfind("CONTENTS ", 0) == 0 && haveTitle) {
            mark.contents = Unescape(line.substr(9));
        } else {
            why = "unexpected line: " + line;
            return false;
        }
    }
    if (haveTitle) marks.push_back(mark);
    return true;
}

}  // namespace

bool SaveRedMarks(const std::string& path, const std::vector<RedMark>& marks, bool text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    if (text) {
        out << kTextHeader << "\n";
        for (const RedMark& mark : marks) out << "TITLE " << Escape(mark.title) << "\nCONTENTS " << Escape(mark.contents) << "\n";
    } else {
        CMemFile file(1024);
        CArchive ar(&file, CArchive::store, 4096);
        ar.Write(kBinaryMagic, 4);
        ar << static_cast<int32_t>(1);
        ar.WriteCount(marks.size());
        for (const RedMark& mark : marks) ar << CString(mark.title) << CString(mark.contents);
        ar.Close();
        void* start = nullptr;
        file.SeekToBegin();
        const UINT n = file.GetBufferPtr(CFile::bufferRead, static_cast<UINT>(file.GetLength()), &start, nullptr);
        out.write(static_cast<const char*>(start), n);
    }
    return static_cast<bool>(out);
}

bool LoadRedMarks(const std::string& path, std::vector<RedMark>& marks, std::string& why) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        why = "cannot read " + path;
        return false;
    }
    std::stringstream buffer;
    buffer << in.rdbuf();
    const std::string bytes = buffer.str();
    marks.clear();
    if (bytes.rfind(kTextHeader, 0) == 0) {
        std::istringstream text(bytes);
        return LoadText(text, marks, why);
    }
    if (bytes.size() < 4 || bytes.compare(0, 4, kBinaryMagic, 4) != 0) {
        why = "not a red-mark file";
        return false;
    }
    try {
        CMemFile file(1024);
        file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
        file.SeekToBegin();
        CArchive ar(&file, CArchive::load, 4096);
        char magic[4];
        ar.Read(magic, 4);
        int32_t version = 0;
        ar >> version;
        if (version != 1) {
            why = "unknown red-mark file version " + std::to_string(version);
            return false;
        }
        const size_t count = ar.ReadCount();
        ar.EnsureAvailable(count, 2);
        for (size_t i = 0; i < count; ++i) {
            CString title, contents;
            ar >> title >> contents;
            marks.push_back(RedMark{title.str(), contents.str()});
        }
    } catch (const CException& e) {
        why = e.what();
        marks.clear();
        return false;
    }
    return true;
}

}  // namespace viewer
