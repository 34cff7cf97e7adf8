// A forward-only walk over the elements of an XML document, on libxml2's text reader,
// so that files of any size are read in constant memory.
#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

// What stops the reading of a document: the message is "line N: element: what".
class Ipc2581Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class XmlStream {
public:
    // Null with the reason in error when the file cannot be opened.
    static std::unique_ptr<XmlStream> OpenFile(const std::string& path, std::string& error);
    // The buffer must outlive the stream.
    static std::unique_ptr<XmlStream> OpenMemory(const char* data, size_t size, std::string& error);
    ~XmlStream();
    XmlStream(const XmlStream&) = delete;
    XmlStream& operator=(const XmlStream&) = delete;

    // Moves to the document's root element; false for a document without one.
    bool NextRoot() { return NextChild(-1); }
    // Moves to the next child element of the element at parentDepth, skipping whatever
    // lies deeper; false at the end of that element. Throws Ipc2581Error on bad XML.
    bool NextChild(int parentDepth);

    // The current element: local name (namespace left out), depth, line.
    const char* Name() const { return m_Name; }
    int Depth() const { return m_Depth; }
    int Line() const;

    // The attribute's value; false (out untouched) when the element has none.
    bool Attr(const char* name, std::string& out) const;
    std::string Attr(const char* name) const;
    // A number attribute times scale; fallback when absent. Throws on a value that is
    // not a number.
    double Number(const char* name, double fallback = 0, double scale = 1) const;
    bool Flag(const char* name) const;  // "true" or "1"

    // An error at the current element: "line N: element: what".
    Ipc2581Error Fail(const std::string& what) const;
    std::string Where() const;

private:
    explicit XmlStream(void* reader);
    const char* RawAttr(const char* name) const;
    void* m_Reader;
    const char* m_Name = "";
    int m_Depth = -1;
    int m_Type = 0;
    bool m_Empty = false;
    std::string m_ParseError;
    int m_ParseErrorLine = 0;
    friend struct XmlStreamErrors;
};
