// The argument list of one extraction request, as if typed on a command line:
// global switches are picked out, the positional arguments kept, and CheckParameter
// tells whether they are usable for the ECAD format that argument 1 names.
//
// Positions: 0 the caller tag ("From_KAPI" from the exported functions), 1 the format
// switch ("/A", "/B", "/M", "/Z", ...), 2 and beyond paths and format values.
// Every refusal writes at most one line to the API log; an index outside the list
// raises CInvalidArgException.
#pragma once

#include "CString.h"
#include "CStringArray.h"

class CEP_Parameter {
public:
    // Runs the switch scan and writes the dump of what was kept.
    explicit CEP_Parameter(const CStringArray& arguments);
    virtual ~CEP_Parameter();

    CEP_Parameter(const CEP_Parameter&) = delete;
    CEP_Parameter& operator=(const CEP_Parameter&) = delete;

    // 1 when the arguments are usable for the format named by argument 1, else 0.
    // Path arguments are normalised in place, so readers see the normalised paths.
    int CheckParameter();
    // Argument 1 without its leading and trailing '/'.
    CString GetFormatKey() const;
    // The long code of the code-table row that the format key selects (matched as
    // CheckParameter matches it: "/m" gives "MB"), or an empty string for none.
    CString GetFormatCode() const;

    // The positional count (switches found by the scan are not counted).
    int GetCount() const { return m_nCount; }
    // Positional argument i; raises CInvalidArgException outside the list.
    const CString& GetAt(int index) const { return m_arrParam.GetAt(index); }
    const CStringArray& GetParameters() const { return m_arrParam; }

    int IsPDBA() const { return m_bPDBA; }
    int IsPEMA() const { return m_bPEMA; }
    int IsPLE() const { return m_bPLE; }
    int IsPLP() const { return m_bPLP; }
    int IsKP() const { return m_bKP; }
    int IsDetVia() const { return m_bDetVia; }
    int IsPDBX() const { return m_bPDBX; }
    int IsNoMerge() const { return m_bNoMerge; }
    int IsBoardGeom() const { return m_bBoardGeom; }
    int IsLog() const { return m_bLog; }
    int IsEnd() const { return m_bEnd; }

    // Set by no switch: a non-zero value makes the ODB++ check fill its "/K" slot.
    void SetOdbKeep(int on) { m_nOdbKeep = on; }
    int GetOdbKeep() const { return m_nOdbKeep; }

private:
    struct CodeRow;
    // The checks of one format's row, run once the count reaches the row's minimum.
    using Validator = int (CEP_Parameter::*)(const CodeRow& row);
    struct CodeRow {
        const char* longCode;
        const char* shortCode;  // null: the row has only its long code
        Validator check;
        int minimum;
        const char* designMessage;  // logged for a missing design (null: not looked for)
        const char* saveMessage;    // logged for a missing save folder
    };
    static const CodeRow kCodeTable[];
    // The row the format key selects, or null.
    const CodeRow* FindCodeRow() const;

    void Dump();
    // Argument i with the other platform's separator replaced, written back.
    CString NormalizePath(int index);
    int Exists(const CString& path, int line) const;
    // Normalises argument index; 0 (logging missingMessage with the path) when it
    // names nothing. A null message only normalises.
    int CheckPathAt(int index, const char* missingMessage);

    int CheckXml();
    int CheckPdbbPath();
    // The design (position 2) and the save folder (3), as the row's messages say.
    int CheckTwoPaths(const CodeRow& row);
    int CheckDsn(const CodeRow& row);
    int CheckMentor(const CodeRow& row);
    int CheckSx(const CodeRow& row);
    int CheckOdb(const CodeRow& row);
    int CheckBoardDesigner(const CodeRow& row);
    int CheckCr5000Pws(const CodeRow& row);

    int m_nCount = 0;
    CStringArray m_arrParam;
    int m_bPDBA = 0;
    int m_bPEMA = 0;
    int m_bPLE = 0;
    int m_bPLP = 0;
    int m_bKP = 0;
    int m_bDetVia = 0;
    CString m_strReserved;
    int m_nOdbKeep = 0;
    int m_nReserved2 = 0;
    int m_nReserved3 = 0;
    int m_bPDBX = 0;
    int m_bNoMerge = 0;
    int m_bBoardGeom = 0;
    int m_bLog = 0;
    CString m_strLog1;
    CString m_strLog2;
    int m_bEnd = 0;
};
