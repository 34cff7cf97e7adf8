// Text encoding conversions of board texts.
#pragma once

#include "CString.h"

// EUC-JP to Shift-JIS without tables: ASCII is kept; a two-byte JIS X 0208 sequence
// (both bytes 0xA1..0xFE) is mapped arithmetically; half-width katakana 0x8E xx
// becomes xx. What has no Shift-JIS form (the three-byte JIS X 0212 sequences
// 0x8F xx xx) becomes the geta mark 0x81 0xAC; a broken sequence becomes '?' per
// byte that cannot start a character.
CString ConvertEucJpToShiftJis(const CString& text);
