// The text form of a board (.pdbba): one record per line, the whole board, written
// and read back without loss. docs/board-database.md describes it; in short:
//
//   PDBBA 2                                   first record: the form and its version
//   BOARD <name>
//   OUTLINE <n> <x1> <y1> ... <xn> <yn>
//   LAYER <name> <ecad name> COPPER|SILK|MASK|OTHER|PASTE|DRILL|DOCUMENT   in stack order, top first
//   PART <name> <package>
//   NET <name>
//   COMP <reference> <part> TOP|BOTTOM|UNPLACED <x> <y> <rotation> [MIRRORED]
//   PIN <name> <x> <y> ROUND|RECT|OBLONG|POLYGON <size x> <size y> <pad angle> <drill> <net>
//   CONTOUR <n> <x1> <y1> ... <xn> <yn>       a POLYGON pad's outline, relative to its pin
//   SEG <net> <layer> <width> <x1> <y1> <x2> <y2>
//   ARC <net> <layer> <width> <x1> <y1> <x2> <y2> <centre x> <centre y> CW|CCW
//   VIA <net> <x> <y> <pad size> <drill> <first layer> <last layer>
//   AREA <net> <layer> <n> <x1> <y1> ... <xn> <yn>
//   HOLE <n> <x1> <y1> ... <xn> <yn>
//   TEXT <layer> <x> <y> <height> <rotation> <text>
//   END
//
// Fields are separated by spaces or tabs. A field that is empty or holds a space, a
// control character, '"' or '\' is written in double quotes, where \" \\ and \xHH
// stand for those bytes. "" as a part or net means none. PIN lines follow their COMP,
// CONTOUR lines their POLYGON PIN (one or more), HOLE lines their AREA. Version 1
// texts, which have none of the version 2 records and words, are read as well. Names are declared before they are used. Lines whose first
// character (after blanks) is '#' and blank lines are ignored. Numbers are written in
// the shortest form that reads back to the same value.
#pragma once

#include <memory>

#include "CPdb.h"
#include "CString.h"

class CPdbText {
public:
    // The version written, and the oldest one still read.
    static constexpr int kFormatVersion = 2;
    static constexpr int kOldestFormatVersion = 1;

    static CString Write(const CPdb& pdb);
    // Writes the text form to path (replacing it); false with a message when the
    // board does not pass CPdb::Validate or the file cannot be written.
    static bool WriteFile(const CPdb& pdb, const CString& path, CString& error);

    // Null, with a message that gives the line number, when the text is not a board.
    static std::unique_ptr<CPdb> Read(const CString& text, CString& error);
    static std::unique_ptr<CPdb> ReadFile(const CString& path, CString& error);
};
