#include "CEP_Parameter.h"

#include "CUniversalLogger.h"
#include "GCUtility.h"
#include "platform.h"

namespace {

const char kDesignFileMessage[] = "Cannot found Design File Path Directory. : %s";
const char kDesignDirMessage[] = "Cannot found design directory. : %s";
const char kSaveDirMessage[] = "Cannot found save directory for PDBB. : %s";
const char kPdbbSaveDirMessage[] = "Cannot found pdbb save directory. : %s";
const char kPdbbFileMessage[] = "Cannot found PDBB File Path. : %s";
const char kOdbDesignMessage[] = "Cannot found Design. : %s";

// The switches of the scan, in the order they are compared.
enum SwitchId { kPDBA, kPDBX, kPEMA, kPLE, kPLP, kKP, kNOMERGE, kBOARDGEOM, kDETVIA };
const char* const kSwitches[] = {"/PDBA", "/PDBX", "/PEMA", "/PLE", "/PLP", "/KP", "/NOMERGE", "/BOARDGEOM", "/DET_VIA"};

// Positions 2 and 3 hold paths that the checks have normalised. Where '/' is the
// separator such a path may contain "/PANEL" or "/DRAWING" by chance, so the walks
// that look for switches inside arguments leave those two positions out. Where '\'
// is the separator a normalised path holds no '/', so nothing changes there.
bool IsPathPosition(int index) { return index == 2 || index == 3; }

// The text after the first ':' (the whole text when there is none).
CString AfterFirstColon(const CString& text) { return text.Mid(text.Find(':') + 1); }

// The letter switches "/x": '/' then one of the allowed letters.
bool IsLetterSwitch(const CString& text, const char* letters) {
    if (text.GetAt(0) != '/') return false;
    const char letter = text.GetAt(1);
    for (const char* p = letters; *p; ++p)
        if (letter == *p) return true;
    return false;
}

// text without every occurrence of needle, matched ignoring case.
CString RemoveNoCase(const CString& text, const char* needle) {
    CString upper(text);
    upper.MakeUpper();
    const int length = static_cast<int>(std::string(needle).size());
    CString result;
    int from = 0;
    for (int at = upper.Find(needle); at >= 0; at = upper.Find(needle, from)) {
        result += text.Mid(from, at - from);
        from = at + length;
    }
    result += text.Mid(from);
    return result;
}

}  // namespace

// Long code, short code, validator, minimum count, and the messages for a missing
// design (null: the design path is normalised, not looked for) and save folder.
// Matched top to bottom; the first row wins, and "A" comes last on purpose.
const CEP_Parameter::CodeRow CEP_Parameter::kCodeTable[] = {
    {"AD", "T", &CEP_Parameter::CheckTwoPaths, 5, kDesignFileMessage, kSaveDirMessage},
    {"AP", "C", &CEP_Parameter::CheckTwoPaths, 5, kDesignFileMessage, kSaveDirMessage},
    {"AE", "L", &CEP_Parameter::CheckTwoPaths, 4, kDesignFileMessage, kSaveDirMessage},
    {"CA", "E", &CEP_Parameter::CheckTwoPaths, 6, kDesignDirMessage, kSaveDirMessage},
    {"CS", "R", &CEP_Parameter::CheckTwoPaths, 5, kDesignFileMessage, kSaveDirMessage},
    {"CV", "V", &CEP_Parameter::CheckDsn, 5, kDesignFileMessage, kSaveDirMessage},
    {"GM", "W", &CEP_Parameter::CheckTwoPaths, 4, kDesignFileMessage, kSaveDirMessage},
    {"GR", "G", &CEP_Parameter::CheckTwoPaths, 4, kDesignFileMessage, kSaveDirMessage},
    {"IPC", "I", &CEP_Parameter::CheckTwoPaths, 4, kDesignFileMessage, kSaveDirMessage},
    {"MB", "M", &CEP_Parameter::CheckMentor, 5, kDesignDirMessage, kPdbbSaveDirMessage},
    {"MN", "N", &CEP_Parameter::CheckTwoPaths, 5, kDesignDirMessage, kPdbbSaveDirMessage},
    {"SP", "D", &CEP_Parameter::CheckTwoPaths, 5, kDesignFileMessage, kSaveDirMessage},
    {"SPP", "PR", &CEP_Parameter::CheckTwoPaths, 5, kDesignFileMessage, kSaveDirMessage},
    {"SX", "P", &CEP_Parameter::CheckSx, 5, kDesignDirMessage, kPdbbSaveDirMessage},
    {"ODB", "O", &CEP_Parameter::CheckOdb, 5, kOdbDesignMessage, kSaveDirMessage},
    {"ZC", "S", &CEP_Parameter::CheckTwoPaths, 4, kDesignFileMessage, kSaveDirMessage},
    {"ZDF", "B", &CEP_Parameter::CheckBoardDesigner, 7, nullptr, kPdbbSaveDirMessage},
    {"ZPS", "Z", &CEP_Parameter::CheckCr5000Pws, 5, nullptr, kPdbbSaveDirMessage},
    {"GDSII", nullptr, &CEP_Parameter::CheckTwoPaths, 4, kDesignFileMessage, kSaveDirMessage},
    {"A", nullptr, &CEP_Parameter::CheckTwoPaths, 6, kDesignDirMessage, kSaveDirMessage},
};

CEP_Parameter::CEP_Parameter(const CStringArray& arguments) {
    // The bound is the count, which every switch found lowers: a switch early in the
    // list shortens the walk, and the last strings are then neither examined nor kept.
    // Every switch is counted, but only /DET_VIA leaves the positional list.
    m_nCount = static_cast<int>(arguments.GetSize());
    for (int i = 0; i < m_nCount; ++i) {
        CString upper(arguments.GetAt(i));
        upper.MakeUpper();
        bool detVia = false;
        for (int s = kPDBA; s <= kDETVIA; ++s) {
            if (upper.CompareNoCase(kSwitches[s]) != 0) continue;
            switch (s) {
            case kPDBA: m_bPDBA = 1; break;
            case kPDBX: m_bPDBX = 1; break;
            case kPEMA: m_bPEMA = 1; break;
            case kPLE: m_bPLE = 1; break;
            case kPLP: m_bPLP = 1; break;
            case kKP: m_bKP = 1; break;
            case kNOMERGE: m_bNoMerge = 1; break;
            case kBOARDGEOM: m_bBoardGeom = 1; break;
            case kDETVIA: m_bDetVia = 1; detVia = true; break;
            }
            --m_nCount;
        }
        if (!detVia) m_arrParam.Add(arguments.GetAt(i));
    }
    Dump();
}

CEP_Parameter::~CEP_Parameter() = default;

void CEP_Parameter::Dump() {
    CUniversalLogger& log = GetUniversalLogger();
    for (int i = 0; i < m_nCount; ++i) log.LogLine("   - Parameter %d : %s", i, GetAt(i).GetString());
    const struct {
        int flag;
        const char* text;
    } shown[] = {{m_bPDBA, "/PDBA"}, {m_bPDBX, "/PDBX"}, {m_bPEMA, "/PEMA"},
                 {m_bPLE, "/PLE"},   {m_bLog, "/LOG"},   {m_bEnd, "/END"}};
    for (const auto& item : shown)
        if (item.flag) log.LogLine("   - Parameter %d : %s", m_nCount, item.text);
}

CString CEP_Parameter::GetFormatKey() const {
    CString key(GetAt(1));
    key.Trim("/");
    return key;
}

CString CEP_Parameter::NormalizePath(int index) {
    CString path(GetAt(index));
    GCUtility::GetInstance().NormalizeSeparators(path);
    m_arrParam.SetAt(index, path);
    return path;
}

int CEP_Parameter::Exists(const CString& path, int line) const {
    return GCUtility::GetInstance().DoesFileOrDirExist(path, __FILE__, line);
}

int CEP_Parameter::CheckParameter() {
    if (m_bKP || m_bPLP) {
        if (m_bKP && CheckXml()) return 1;
        if (m_bPLP) return CheckPdbbPath();
        return 0;
    }
    if (m_nCount < 4) return 0;
    const CString& formatSwitch = GetAt(1);
    if (formatSwitch.GetAt(0) != '/' || formatSwitch.GetLength() < 2) return 0;

    const CodeRow* row = FindCodeRow();
    return row && m_nCount >= row->minimum ? (this->*row->check)(*row) : 0;
}

const CEP_Parameter::CodeRow* CEP_Parameter::FindCodeRow() const {
    if (m_arrParam.GetSize() < 2) return nullptr;
    CString key = GetFormatKey();
    key.MakeUpper();
    for (const CodeRow& row : kCodeTable) {
        if (key.CompareNoCase(row.longCode) == 0 || (row.shortCode && key.CompareNoCase(row.shortCode) == 0))
            return &row;
    }
    return nullptr;
}

CString CEP_Parameter::GetFormatCode() const {
    const CodeRow* row = FindCodeRow();
    return row ? CString(row->longCode) : CString();
}

int CEP_Parameter::CheckPathAt(int index, const char* missingMessage) {
    const CString path = NormalizePath(index);
    if (!missingMessage || Exists(path, __LINE__)) return 1;
    GetUniversalLogger().LogLine(missingMessage, path.GetString());
    return 0;
}

int CEP_Parameter::CheckXml() {
    if (m_nCount < 3) return 0;
    if (!CheckPathAt(1, kPdbbFileMessage)) return 0;
    CString ending(GetAt(3).Right(4));
    ending.MakeUpper();
    return ending != ".XML" || CheckPathAt(3, "Cannot found XML File Path. : %s");
}

int CEP_Parameter::CheckPdbbPath() { return m_nCount >= 2 && CheckPathAt(1, kPdbbFileMessage); }

int CEP_Parameter::CheckTwoPaths(const CodeRow& row) {
    return CheckPathAt(2, row.designMessage) && CheckPathAt(3, row.saveMessage);
}

int CEP_Parameter::CheckDsn(const CodeRow& row) {
    if (!CheckPathAt(2, row.designMessage)) return 0;
    CString dsn = GetAt(2) + "\\" + GetAt(4) + ".dsn";
    GCUtility::GetInstance().NormalizeSeparators(dsn);
    if (!Exists(dsn, __LINE__)) {
        GetUniversalLogger().LogLine(row.designMessage, dsn.GetString());
        return 0;
    }
    return CheckPathAt(3, row.saveMessage);
}

int CEP_Parameter::CheckMentor(const CodeRow& row) {
    if (!CheckTwoPaths(row)) return 0;
    if (m_nCount < 7) return 1;

    CString mode(GetAt(5));
    mode.MakeUpper();
    if (mode != "/S" && mode != "/A" && mode != "/AF") return 0;

    // Three walks, one per named value, each refusing an empty value.
    const struct {
        const char* name;
        const char* message;
    } values[] = {{"/PANEL", "Invalid Panel Name : %s"},
                  {"/COCTOP", "Invalid COC TOP Layer Name : %s"},
                  {"/COCBOTTOM", "Invalid COC Bottom Layer Name : %s"}};
    for (const auto& value : values) {
        for (int i = 0; i < m_nCount; ++i) {
            if (IsPathPosition(i)) continue;
            CString argument(GetAt(i));
            argument.MakeUpper();
            argument.Trim();
            if (argument.Find(value.name) < 0) continue;
            CString text = AfterFirstColon(argument);
            text.Trim("\"");
            if (text.IsEmpty()) {
                GetUniversalLogger().LogLine(value.message, GetAt(i).GetString());
                return 0;
            }
        }
    }
    return 1;
}

int CEP_Parameter::CheckSx(const CodeRow& row) {
    if (!CheckTwoPaths(row)) return 0;
    CString name(GetAt(4));
    name.MakeUpper();
    if (name.Find(".PDBB") < 0) {
        // A board database left by an earlier run would be taken for this run's output.
        // Where file names are case-sensitive the lower-case spelling is removed too.
        GCUtility& util = GCUtility::GetInstance();
        for (const char* extension : {".PDBB", ".pdbb"}) {
            const CString stale = util.GCPathCombine(GetAt(3), GetAt(4) + extension, __FILE__, __LINE__);
            if (Exists(stale, __LINE__)) platform::DeleteFile(stale.str());
        }
    }
    return 1;
}

int CEP_Parameter::CheckOdb(const CodeRow& row) {
    if (!CheckPathAt(2, row.designMessage)) return 0;
    // The save folder is made when missing.
    const CString saveDir = NormalizePath(3);
    if (!Exists(saveDir, __LINE__)) GCUtility::GetInstance().MakeDirectory(saveDir);
    if (!CheckPathAt(3, row.saveMessage)) return 0;

    // Positions 0 to 4 stay; 5 to 25 become fixed option slots filled from the rest.
    constexpr int kFirstSlot = 5;
    constexpr int kSlotCount = 21;
    CStringArray rebuilt;
    for (int i = 0; i < kFirstSlot; ++i) rebuilt.Add(GetAt(i));
    for (int i = 0; i < kSlotCount; ++i) rebuilt.Add(CString());

    enum Test { kPrefix, kEquals, kContains };
    struct SlotRule {
        Test test;
        const char* text;
        int slot;
        enum { kWhole, kTrue, kAfterPrefix, kWithoutText } value;
    };
    static const SlotRule rules[] = {
        {kPrefix, "/S:", 5, SlotRule::kWhole},
        {kPrefix, "/B:", 6, SlotRule::kWhole},
        {kPrefix, "/U:", 7, SlotRule::kWhole},
        {kEquals, "/SKIP_MISC", 8, SlotRule::kTrue},
        {kEquals, "/SKIP_ENDFILE", 12, SlotRule::kTrue},
        {kEquals, "/ADD_SUBBOARD_OUTLINE", 13, SlotRule::kTrue},
        {kPrefix, "/LOG:", 9, SlotRule::kWhole},
        {kEquals, "/SA", 10, SlotRule::kTrue},
        {kEquals, "/RL", 11, SlotRule::kTrue},
        {kPrefix, "/DRILL_TO_VIA:", 14, SlotRule::kWhole},
        {kPrefix, "/LAY_FILTER:", 15, SlotRule::kWhole},
        {kEquals, "/CD", 16, SlotRule::kTrue},
        {kPrefix, "/PLX:", 17, SlotRule::kAfterPrefix},
        {kEquals, "/K", 18, SlotRule::kTrue},
        {kPrefix, "/FIGT:", 19, SlotRule::kWhole},
        {kPrefix, "/FIGB:", 20, SlotRule::kWhole},
        {kPrefix, "/SO:", 21, SlotRule::kWhole},
        {kEquals, "/SAF", 22, SlotRule::kTrue},
        {kContains, "/THREAD:", 23, SlotRule::kWithoutText},
        {kEquals, "/POSI", 24, SlotRule::kTrue},
        {kEquals, "/MATERIAL", 25, SlotRule::kTrue},
    };
    for (int i = kFirstSlot; i < m_nCount; ++i) {
        const CString& given = GetAt(i);
        CString upper(given);
        upper.MakeUpper();
        for (const SlotRule& rule : rules) {
            const int length = static_cast<int>(std::string(rule.text).size());
            bool holds = false;
            switch (rule.test) {
            case kPrefix: holds = upper.Left(length) == rule.text; break;
            case kEquals: holds = upper == rule.text; break;
            case kContains: holds = upper.Find(rule.text) >= 0; break;
            }
            if (!holds) continue;
            switch (rule.value) {
            case SlotRule::kWhole: rebuilt.SetAt(rule.slot, given); break;
            case SlotRule::kTrue: rebuilt.SetAt(rule.slot, "TRUE"); break;
            case SlotRule::kAfterPrefix: rebuilt.SetAt(rule.slot, given.Mid(length)); break;
            case SlotRule::kWithoutText: rebuilt.SetAt(rule.slot, RemoveNoCase(given, rule.text)); break;
            }
            break;
        }
    }
    if (m_nOdbKeep) rebuilt.SetAt(18, "TRUE");
    m_arrParam = rebuilt;
    m_nCount = static_cast<int>(m_arrParam.GetSize());

    CString unit(m_arrParam.GetAt(7));
    if (!unit.IsEmpty()) {
        unit.MakeLower();
        unit.TrimLeft("/u:");
        if (unit != "mm" && unit != "inch" && unit != "mil") {
            GetUniversalLogger().LogLine("Invalid PDB Save Unit : %s", unit.GetString());
            return 0;
        }
    }
    return 1;
}

int CEP_Parameter::CheckBoardDesigner(const CodeRow& row) {
    return CheckTwoPaths(row) && IsLetterSwitch(GetAt(4), "ABab") && IsLetterSwitch(GetAt(5), "ASas");
}

int CEP_Parameter::CheckCr5000Pws(const CodeRow& row) {
    if (!CheckTwoPaths(row) || !IsLetterSwitch(GetAt(4), "AWaw")) return 0;
    return m_nCount != 6 || CheckPathAt(5, "Cannot found zls file path. : %s");
}
