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

bool HasAttribute(xmlNodePtr node, const char* name) {
    for (xmlAttrPtr attribute = node->properties; attribute; attribute = attribute->next)
        if (std::strcmp(reinterpret_cast<const char*>(attribute->name), name) == 0) return true;
    return false;
}

// The value of the current element's attribute, read in place (no copy), or null.
// The reader is moved back to the element before returning.
const char* XmlStream::RawAttr(const char* name) const {
    xmlTextReaderPtr reader = Reader(m_Reader);
    // The element's own node holds its attributes: a plain value is its one text child.
    if (xmlNodePtr node = xmlTextReaderCurrentNode(reader); node && node->type == XML_ELEMENT_NODE) {
        for (xmlAttrPtr attribute = node->properties; attribute; attribute = attribute->next) {
            if (std::strcmp(reinterpret_cast<const char*>(attribute->name), name) != 0) continue;
            const xmlNode* text = attribute->children;
            if (!text) return "";
            if (text->type == XML_TEXT_NODE && !text->next && text->content)
                return reinterpret_cast<const char*>(text->content);
            break;  // entity references in the value: let the reader put it together
        }
        if (!HasAttribute(node, name)) return nullptr;
    }
    if (xmlTextReaderMoveToAttribute(reader, reinterpret_cast<const xmlChar*>(name)) != 1) return nullptr;
    const xmlChar* value = xmlTextReaderConstValue(reader);
    xmlTextReaderMoveToElement(reader);
    return value ? reinterpret_cast<const char*>(value) : "";
}

bool XmlStream::Attr(const char* name, std::string& out) const {
    const char* value = RawAttr(name);
    if (!value) return false;
    out.assign(value);
    return true;
}

std::string XmlStream::Attr(const char* name) const {
    std::string value;
    Attr(name, value);
    return value;
}

double XmlStream::Number(const char* name, double fallback, double scale) const {
    const char* begin = RawAttr(name);
    if (!begin) return fallback;
    const char* end = begin + std::strlen(begin);
    while (begin < end && (*begin == ' ' || *begin == '+')) ++begin;
    while (end > begin && end[-1] == ' ') --end;
    double number = 0;
    const auto result = std::from_chars(begin, end, number);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(number))
        throw Fail(std::string("attribute ") + name + " is not a number");
    return number * scale;
}

bool XmlStream::Flag(const char* name) const {
    const std::string value = Attr(name);
    return value == "true" || value == "1" || value == "TRUE";
}

std::string XmlStream::Where() const { return "line " + std::to_string(Line()) + ": " + m_Name; }

Ipc2581Error XmlStream::Fail(const std::string& what) const { return Ipc2581Error(Where() + ": " + what); }
