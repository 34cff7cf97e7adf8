#include "XmlStream.h"

#include <libxml/xmlreader.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

xmlTextReaderPtr Reader(void* p) { return static_cast<xmlTextReaderPtr>(p); }

// No network, no entity expansion: a board file needs neither.
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_NOWARNING;

}  // namespace

// Keeps the parser's first error, so that the failing read can report it with its line.
struct XmlStreamErrors {
    static void Handle(void* context, const xmlError* error) {
        auto* stream = static_cast<XmlStream*>(context);
        if (!error || error->level < XML_ERR_ERROR || !stream->m_ParseError.empty()) return;
        std::string message = error->message ? error->message : "malformed XML";
        while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) message.pop_back();
        stream->m_ParseError = message;
        stream->m_ParseErrorLine = error->line;
    }
};

XmlStream::XmlStream(void* reader) : m_Reader(reader) {
    xmlTextReaderSetStructuredErrorHandler(Reader(reader),
                                           reinterpret_cast<xmlStructuredErrorFunc>(&XmlStreamErrors::Handle), this);
}

XmlStream::~XmlStream() { xmlFreeTextReader(Reader(m_Reader)); }

std::unique_ptr<XmlStream> XmlStream::OpenFile(const std::string& path, std::string& error) {
    xmlTextReaderPtr reader = xmlReaderForFile(path.c_str(), nullptr, kParseOptions);
    if (!reader) {
        error = "cannot open " + path;
        return nullptr;
    }
    return std::unique_ptr<XmlStream>(new XmlStream(reader));
}

std::unique_ptr<XmlStream> XmlStream::OpenMemory(const char* data, size_t size, std::string& error) {
    xmlTextReaderPtr reader = xmlReaderForMemory(data, static_cast<int>(size), nullptr, nullptr, kParseOptions);
    if (!reader) {
        error = "cannot read the document";
        return nullptr;
    }
    return std::unique_ptr<XmlStream>(new XmlStream(reader));
}

bool XmlStream::NextChild(int parentDepth) {
    // An empty parent (<X/>) has no end node to wait for.
    if (m_Type == XML_READER_TYPE_ELEMENT && m_Depth == parentDepth && m_Empty) {
        m_Type = XML_READER_TYPE_END_ELEMENT;
        return false;
    }
    for (;;) {
        const int status = xmlTextReaderRead(Reader(m_Reader));
        if (status < 0 || !m_ParseError.empty()) {
            const int line = m_ParseErrorLine ? m_ParseErrorLine : Line();
            throw Ipc2581Error("line " + std::to_string(line) + ": " + m_Name + ": " +
                               (m_ParseError.empty() ? std::string("malformed XML") : m_ParseError));
        }
        if (status == 0) {
            if (parentDepth >= 0) throw Fail("the document ends early");
            return false;
        }
        m_Type = xmlTextReaderNodeType(Reader(m_Reader));
        if (m_Type == XML_READER_TYPE_ELEMENT) {
            m_Depth = xmlTextReaderDepth(Reader(m_Reader));
            if (m_Depth <= parentDepth) return false;
            if (m_Depth == parentDepth + 1) {
                const xmlChar* name = xmlTextReaderConstLocalName(Reader(m_Reader));
                m_Name = name ? reinterpret_cast<const char*>(name) : "";
                m_Empty = xmlTextReaderIsEmptyElement(Reader(m_Reader)) == 1;
                return true;
            }
        } else if (m_Type == XML_READER_TYPE_END_ELEMENT) {
            const int depth = xmlTextReaderDepth(Reader(m_Reader));
            if (depth <= parentDepth) {
                m_Depth = depth;
                return false;
            }
        }
    }
}

int XmlStream::Line() const { return xmlTextReaderGetParserLineNumber(Reader(m_Reader)); }

bool XmlStream::Attr(const char* name, std::string& out) const {
    xmlChar* value = xmlTextReaderGetAttribute(Reader(m_Reader), reinterpret_cast<const xmlChar*>(name));
    if (!value) return false;
    out.assign(reinterpret_cast<const char*>(value));
    xmlFree(value);
    return true;
}

std::string XmlStream::Attr(const char* name) const {
    std::string value;
    Attr(name, value);
    return value;
}

double XmlStream::Number(const char* name, double fallback, double scale) const {
    xmlChar* value = xmlTextReaderGetAttribute(Reader(m_Reader), reinterpret_cast<const xmlChar*>(name));
    if (!value) return fallback;
    const char* begin = reinterpret_cast<const char*>(value);
    const char* end = begin + std::strlen(begin);
    while (begin < end && (*begin == ' ' || *begin == '+')) ++begin;
    while (end > begin && end[-1] == ' ') --end;
    double number = 0;
    const auto result = std::from_chars(begin, end, number);
    const bool good = result.ec == std::errc() && result.ptr == end && std::isfinite(number);
    xmlFree(value);
    if (!good) throw Fail(std::string("attribute ") + name + " is not a number");
    return number * scale;
}

bool XmlStream::Flag(const char* name) const {
    const std::string value = Attr(name);
    return value == "true" || value == "1" || value == "TRUE";
}

std::string XmlStream::Where() const { return "line " + std::to_string(Line()) + ": " + m_Name; }

Ipc2581Error XmlStream::Fail(const std::string& what) const { return Ipc2581Error(Where() + ": " + what); }
