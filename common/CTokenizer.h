// Splits a text at any of a set of separator characters. Runs of separators and
// separators at either end give no empty token; an empty separator set leaves the
// whole text as one token; an empty text gives no token. Tokens are not trimmed.
#pragma once

#include "CString.h"
#include "CStringArray.h"

class CTokenizer {
public:
    CTokenizer(const CString& text, const CString& separators) : m_text(text), m_separators(separators) {}
    // Replaces the contents of tokens with the tokens, in text order; returns their number.
    INT_PTR GetTokenArray(CStringArray& tokens) const;

private:
    CString m_text;
    CString m_separators;
};
