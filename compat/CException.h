// Errors raised by the compat containers and archives. Thrown by value.
#pragma once

#include <stdexcept>

class CException : public std::runtime_error {
public:
    explicit CException(const char* what) : std::runtime_error(what) {}
};

// An index or argument outside what the container holds.
class CInvalidArgException : public CException {
public:
    CInvalidArgException() : CException("invalid argument") {}
};

// A load read past the end of the data, or data that cannot be a valid image.
class CArchiveException : public CException {
public:
    enum Cause { none = 0, badIndex = 2, badClass = 3, endOfFile = 8 };
    explicit CArchiveException(Cause cause)
        : CException(cause == endOfFile ? "archive: read past the end of the data" : "archive: malformed data"),
          m_cause(cause) {}
    Cause m_cause;
};
