#include "Ipc2581Import.h"

#include <cstring>
#include <fstream>

#include "Ipc2581Reader.h"
#include "XmlStream.h"

namespace {

std::unique_ptr<CPdb> Import(std::unique_ptr<XmlStream> xml, const Ipc2581ImportOptions& options,
                             std::vector<std::string>& warnings, std::string& error) {
    if (!xml) return nullptr;
    try {
        return ReadIpc2581(*xml, options, warnings);
    } catch (const std::exception& e) {
        error = e.what();
    } catch (...) {
        error = "unexpected failure";
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<CPdb> ImportIpc2581File(const std::string& path, const Ipc2581ImportOptions& options,
                                        std::vector<std::string>& warnings, std::string& error) {
    try {
        return Import(XmlStream::OpenFile(path, error), options, warnings, error);
    } catch (...) {
        error = "unexpected failure";
        return nullptr;
    }
}

std::unique_ptr<CPdb> ImportIpc2581Buffer(const char* data, size_t size, const Ipc2581ImportOptions& options,
                                          std::vector<std::string>& warnings, std::string& error) {
    try {
        return Import(XmlStream::OpenMemory(data, size, error), options, warnings, error);
    } catch (...) {
        error = "unexpected failure";
        return nullptr;
    }
}

bool IsIpc2581File(const std::string& path) {
    try {
        // The root element is near the start: a prolog and comments at most.
        std::ifstream in(path, std::ios::binary);
        if (!in) return false;
        std::string head(4096, '\0');
        in.read(&head[0], static_cast<std::streamsize>(head.size()));
        head.resize(static_cast<size_t>(in.gcount()));
        std::string error;
        auto xml = XmlStream::OpenMemory(head.data(), head.size(), error);
        return xml && xml->NextRoot() && std::strcmp(xml->Name(), "IPC-2581") == 0;
    } catch (...) {
        return false;
    }
}
