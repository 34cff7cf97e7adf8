#include "PdbText.h"

#include <charconv>
#include <cstdarg>
#include <string>
#include <vector>

#include "PdbFileIO.h"

namespace {

const char* const kKinds[] = {"COPPER", "SILK", "MASK", "OTHER", "PASTE", "DRILL", "DOCUMENT"};
const char* const kSides[] = {"TOP", "BOTTOM", "UNPLACED"};
const char* const kShapes[] = {"ROUND", "RECT", "OBLONG", "POLYGON"};
const char* const kDirections[] = {"CCW", "CW"};

// ---- Writing ----------------------------------------------------------------

class TextWriter {
public:
    std::string out;

    TextWriter& Key(const char* keyword) {
        out += keyword;
        return *this;
    }
    TextWriter& Word(const char* word) {
        out += ' ';
        out += word;
        return *this;
    }
    TextWriter& Str(const CString& text) {
        out += ' ';
        const std::string& s = text.str();
        bool plain = !s.empty();
        for (unsigned char c : s) {
            if (c <= 0x20 || c == 0x7F || c == '"' || c == '\\') {
                plain = false;
                break;
            }
        }
        if (plain) {
            out += s;
            return *this;
        }
        out += '"';
        for (unsigned char c : s) {
            if (c == '"' || c == '\\') {
                out += '\\';
                out += static_cast<char>(c);
            } else if (c < 0x20 || c == 0x7F) {
                static const char hex[] = "0123456789ABCDEF";
                out += "\\x";
                out += hex[c >> 4];
                out += hex[c & 15];
            } else {
                out += static_cast<char>(c);
            }
        }
        out += '"';
        return *this;
    }
    TextWriter& Num(double value) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        out += ' ';
        out.append(buffer, result.ptr);
        return *this;
    }
    TextWriter& Int(long long value) {
        out += ' ';
        out += std::to_string(value);
        return *this;
    }
    TextWriter& Points(const CArrayPointD& points) {
        Int(points.GetSize());
        const CPointD* p = points.GetData();
        for (INT_PTR i = 0; i < points.GetSize(); ++i) Num(p[i].x).Num(p[i].y);
        return *this;
    }
    void End() { out += '\n'; }
};

CString NetName(const CPNet* net) { return net ? net->GetName() : CString(); }

// ---- Reading ----------------------------------------------------------------

struct TextError {
    std::string message;
};

class TextReader {
public:
    TextReader(const std::string& text, CPdb& pdb) : m_text(text), m_pdb(pdb) {}

    void Read() {
        bool header = false, ended = false;
        while (NextLine()) {
            if (m_fields.empty()) continue;
            const std::string& key = m_fields[0];
            if (ended) Fail("text after END");
            if (!header) {
                if (key != "PDBBA") Fail("the first record must be 'PDBBA %d'", CPdbText::kFormatVersion);
                Expect(2);
                const int version = Integer(1);
                if (version < CPdbText::kOldestFormatVersion || version > CPdbText::kFormatVersion)
                    Fail("version %d of the text form is not supported (this program reads %d to %d)", version,
                         CPdbText::kOldestFormatVersion, CPdbText::kFormatVersion);
                header = true;
                continue;
            }
            const std::string previous = m_previousKey;
            m_previousKey = key;
            if (key != "CONTOUR") FinishPadOutline();
            if (key == "BOARD") {
                Expect(2);
                if (m_sawBoard) Fail("a second BOARD record");
                m_sawBoard = true;
                m_pdb.SetBoardName(Field(1));
            } else if (key == "OUTLINE") {
                if (m_sawOutline) Fail("a second OUTLINE record");
                m_sawOutline = true;
                Points(1, m_pdb.GetOutline());
            } else if (key == "LAYER") {
                Expect(4);
                const int kind = Keyword(3, kKinds, 7, "layer kind");
                if (!m_pdb.GetLayerManager().AddLayer(Field(1), Field(2), static_cast<LayerKind>(kind)))
                    Fail("layer name '%s' is empty or used already", m_fields[1].c_str());
            } else if (key == "PART") {
                Expect(3);
                if (!m_pdb.AddPart(Field(1), Field(2))) Fail("part '%s' is declared twice", m_fields[1].c_str());
            } else if (key == "NET") {
                Expect(2);
                if (!m_pdb.AddNet(Field(1))) Fail("net name '%s' is empty or used already", m_fields[1].c_str());
            } else if (key == "COMP") {
                ReadComp();
            } else if (key == "PIN") {
                if (previous != "COMP" && previous != "PIN" && previous != "CONTOUR") Fail("PIN must follow its COMP");
                ReadPin();
            } else if (key == "CONTOUR") {
                if (!m_polygonPin) Fail("CONTOUR must follow a POLYGON pin");
                m_padOutline.emplace_back();
                Points(1, m_padOutline.back());
                if (m_padOutline.back().GetSize() < 3) Fail("a pad contour needs three points or more");
            } else if (key == "SEG") {
                Expect(8);
                CPNet* net = RouteNet(1);
                const int layer = Layer(2);
                net->GetRoute().AddSegment(layer, Number(3),
                                           C2PointD(CPointD(Number(4), Number(5)), CPointD(Number(6), Number(7))));
            } else if (key == "ARC") {
                Expect(11);
                CPNet* net = RouteNet(1);
                const int layer = Layer(2);
                const bool clockwise = Keyword(10, kDirections, 2, "arc direction") == 1;
                net->GetRoute().AddArc(layer, Number(3),
                                       C2PointD(CPointD(Number(4), Number(5)), CPointD(Number(6), Number(7))),
                                       CPointD(Number(8), Number(9)), clockwise);
            } else if (key == "VIA") {
                Expect(8);
                CPNet* net = RouteNet(1);
                const int from = Layer(6), to = Layer(7);
                if (from > to) Fail("the via's first layer '%s' lies below its last", m_fields[6].c_str());
                net->GetRoute().AddVia(CPointD(Number(2), Number(3)), Number(4), Number(5), from, to);
            } else if (key == "AREA") {
                if (m_fields.size() < 4) Fail("AREA takes a net, a layer and a point list");
                CPNet* net = OptionalNet(1);
                m_area = m_pdb.AddArea(Layer(2), net);
                Points(3, m_area->GetOutline());
            } else if (key == "HOLE") {
                if (previous != "AREA" && previous != "HOLE") Fail("HOLE must follow its AREA");
                Points(1, *m_area->AddHole());
            } else if (key == "TEXT") {
                Expect(7);
                m_pdb.AddText(Layer(1), Field(6), CPointD(Number(2), Number(3)), Number(4), Number(5));
            } else if (key == "END") {
                Expect(1);
                ended = true;
            } else {
                Fail("unknown record '%s'", key.c_str());
            }
        }
        if (!header) {
            m_line = 0;
            Fail("no 'PDBBA %d' record: not a board text", CPdbText::kFormatVersion);
        }
        if (!ended) {
            m_line = 0;
            Fail("the text ends without END: it is incomplete");
        }
    }

    // A POLYGON pin takes the CONTOUR lines that follow it.
    void FinishPadOutline() {
        if (!m_polygonPin) return;
        if (m_padOutline.empty()) Fail("the POLYGON pad before this line has no CONTOUR lines");
        m_polygonPin->SetPadOutline(std::move(m_padOutline));
        m_padOutline.clear();
        m_polygonPin = nullptr;
    }

private:
    void ReadComp() {
        if (m_fields.size() != 8 || m_fields[7] != "MIRRORED") Expect(7);
        CPPart* part = nullptr;
        if (!m_fields[2].empty()) {
            part = m_pdb.FindPart(Field(2));
            if (!part) Fail("unknown part '%s'", m_fields[2].c_str());
        }
        const int side = Keyword(3, kSides, 3, "component side");
        m_comp = m_pdb.AddComp(Field(1), part, static_cast<CompSide>(side), CPointD(Number(4), Number(5)), Number(6));
        if (!m_comp) Fail("reference '%s' is empty or used already", m_fields[1].c_str());
        m_comp->SetMirrored(m_fields.size() == 8);
    }

    void ReadPin() {
        Expect(10);
        const int shape = Keyword(4, kShapes, 4, "pad shape");
        CPNet* net = OptionalNet(9);
        CPRefPin* pin = m_comp->AddPin(Field(1), CPointD(Number(2), Number(3)), static_cast<PadShape>(shape),
                                       Number(5), Number(6), Number(7), Number(8));
        if (net) net->AddPin(pin);
        if (pin->GetShape() == PadShape::Polygon) m_polygonPin = pin;
    }

    // Splits the next line into m_fields; false at the end of the text.
    bool NextLine() {
        m_fields.clear();
        if (m_pos >= m_text.size()) return false;
        ++m_line;
        size_t end = m_text.find('\n', m_pos);
        if (end == std::string::npos) end = m_text.size();
        size_t stop = end;
        if (stop > m_pos && m_text[stop - 1] == '\r') --stop;
        size_t i = m_pos;
        m_pos = end + 1;
        const auto blank = [](char c) { return c == ' ' || c == '\t'; };
        while (i < stop && blank(m_text[i])) ++i;
        if (i < stop && m_text[i] == '#') return true;
        while (i < stop) {
            std::string field;
            if (m_text[i] == '"') {
                ++i;
                bool closed = false;
                while (i < stop) {
                    const char c = m_text[i++];
                    if (c == '"') {
                        closed = true;
                        break;
                    }
                    if (c != '\\') {
                        field += c;
                        continue;
                    }
                    if (i >= stop) break;
                    const char e = m_text[i++];
                    if (e == '"' || e == '\\') {
                        field += e;
                    } else if (e == 'x' && i + 2 <= stop && IsHex(m_text[i]) && IsHex(m_text[i + 1])) {
                        field += static_cast<char>(HexValue(m_text[i]) * 16 + HexValue(m_text[i + 1]));
                        i += 2;
                    } else {
                        Fail("unknown escape '\\%c' in quoted text", e);
                    }
                }
                if (!closed) Fail("quoted text is not closed");
                if (i < stop && !blank(m_text[i])) Fail("quoted text runs into the next field");
            } else {
                while (i < stop && !blank(m_text[i])) field += m_text[i++];
            }
            m_fields.push_back(std::move(field));
            while (i < stop && blank(m_text[i])) ++i;
        }
        return true;
    }

    static bool IsHex(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }
    static int HexValue(char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; }

    void Expect(size_t count) {
        if (m_fields.size() != count)
            Fail("%s takes %zu fields, found %zu", m_fields[0].c_str(), count - 1, m_fields.size() - 1);
    }
    CString Field(size_t i) const { return CString(m_fields[i]); }

    double Number(size_t i) {
        const std::string& s = m_fields[i];
        const char* first = s.data();
        const char* last = first + s.size();
        if (first != last && *first == '+') ++first;
        double value = 0;
        const auto result = std::from_chars(first, last, value);
        if (result.ec != std::errc() || result.ptr != last || s.empty()) Fail("'%s' is not a number", s.c_str());
        return value;
    }
    int Integer(size_t i) {
        const std::string& s = m_fields[i];
        int value = 0;
        const auto result = std::from_chars(s.data(), s.data() + s.size(), value);
        if (result.ec != std::errc() || result.ptr != s.data() + s.size() || s.empty())
            Fail("'%s' is not a whole number", s.c_str());
        return value;
    }
    int Keyword(size_t i, const char* const* words, int count, const char* what) {
        for (int k = 0; k < count; ++k) {
            if (m_fields[i] == words[k]) return k;
        }
        Fail("unknown %s '%s'", what, m_fields[i].c_str());
    }
    int Layer(size_t i) {
        const int layer = m_pdb.GetLayerManager().FindLayerIndex(Field(i));
        if (layer < 0) Fail("unknown layer '%s'", m_fields[i].c_str());
        return layer;
    }
    CPNet* OptionalNet(size_t i) {
        if (m_fields[i].empty()) return nullptr;
        CPNet* net = m_pdb.FindNet(Field(i));
        if (!net) Fail("unknown net '%s'", m_fields[i].c_str());
        return net;
    }
    CPNet* RouteNet(size_t i) {
        if (m_fields[i].empty()) Fail("routing needs a net");
        return OptionalNet(i);
    }
    // A count at field i, then that many x y pairs ending the line.
    void Points(size_t i, CArrayPointD& points) {
        if (m_fields.size() <= i) Fail("%s needs a point count", m_fields[0].c_str());
        const int n = Integer(i);
        if (n < 0 || m_fields.size() - i - 1 != 2 * static_cast<size_t>(n))
            Fail("%s announces %d points and gives %zu numbers", m_fields[0].c_str(), n, m_fields.size() - i - 1);
        points.SetSize(n);
        CPointD* p = points.GetData();
        for (int k = 0; k < n; ++k) p[k] = CPointD(Number(i + 1 + 2 * k), Number(i + 2 + 2 * k));
    }

    [[noreturn]] void Fail(const char* format, ...)
        KPCB_PRINTF_LIKE(2, 3)
    {
        va_list args;
        va_start(args, format);
        CString text;
        text.FormatV(format, args);
        va_end(args);
        CString message;
        if (m_line > 0) {
            message.Format("line %d: %s", m_line, text.GetString());
        } else {
            message = text;
        }
        throw TextError{message.str()};
    }

    const std::string& m_text;
    CPdb& m_pdb;
    size_t m_pos = 0;
    int m_line = 0;
    std::vector<std::string> m_fields;
    std::string m_previousKey;
    bool m_sawBoard = false, m_sawOutline = false;
    CPComp* m_comp = nullptr;
    CPArea* m_area = nullptr;
    CPRefPin* m_polygonPin = nullptr;  // waiting for its CONTOUR lines
    CPadOutline m_padOutline;
};

}  // namespace

CString CPdbText::Write(const CPdb& pdb) {
    TextWriter w;
    w.out.reserve(static_cast<size_t>(pdb.GetTotalPinCount()) * 64 + 4096);
    w.Key("# KorbinPCB board database, text form").End();
    w.Key("PDBBA").Int(kFormatVersion).End();
    w.Key("BOARD").Str(pdb.GetBoardName()).End();
    w.Key("OUTLINE").Points(pdb.GetOutline()).End();

    const CPDBLayerManager& layers = pdb.GetLayerManager();
    for (int i = 0; i < layers.GetLayerCount(); ++i) {
        const CPLay* layer = layers.GetLayer(i);
        w.Key("LAYER").Str(layer->GetName()).Str(layer->GetEcadName()).Word(kKinds[static_cast<int>(layer->GetKind())]).End();
    }
    // A board that fails Validate may name a layer outside the stack: it is written as
    // an empty name, which the reader refuses.
    const auto layerName = [&layers](int index) {
        const CPLay* layer = layers.GetLayer(index);
        return layer ? layer->GetName() : CString();
    };

    for (int i = 0; i < pdb.GetPartCount(); ++i) w.Key("PART").Str(pdb.GetPart(i)->GetName()).Str(pdb.GetPart(i)->GetPackage()).End();
    for (int i = 0; i < pdb.GetNetCount(); ++i) w.Key("NET").Str(pdb.GetNet(i)->GetName()).End();

    for (int i = 0; i < pdb.GetCompCount(); ++i) {
        const CPComp* comp = pdb.GetComp(i);
        w.Key("COMP").Str(comp->GetReference()).Str(comp->GetPartName()).Word(kSides[static_cast<int>(comp->GetSide())]);
        w.Num(comp->GetPosition().x).Num(comp->GetPosition().y).Num(comp->GetRotation());
        if (comp->IsMirrored()) w.Word("MIRRORED");
        w.End();
        for (int j = 0; j < comp->GetPinCount(); ++j) {
            const CPRefPin* pin = comp->GetPin(j);
            w.Key("PIN").Str(pin->GetName()).Num(pin->GetPosition().x).Num(pin->GetPosition().y);
            w.Word(kShapes[static_cast<int>(pin->GetShape())]).Num(pin->GetSizeX()).Num(pin->GetSizeY());
            w.Num(pin->GetPadAngle()).Num(pin->GetDrill()).Str(NetName(pin->GetNet())).End();
            for (const CArrayPointD& contour : pin->GetPadOutline()) w.Key("CONTOUR").Points(contour).End();
        }
    }

    for (int i = 0; i < pdb.GetNetCount(); ++i) {
        const CPNet* net = pdb.GetNet(i);
        const CPRouteNet& route = net->GetRoute();
        for (int j = 0; j < route.GetCount(); ++j) {
            const CPRouteDObj* obj = route.GetAt(j);
            if (obj->IsVia()) {
                w.Key("VIA").Str(net->GetName()).Num(obj->GetPosition().x).Num(obj->GetPosition().y);
                w.Num(obj->GetWidth()).Num(obj->GetDrill()).Str(layerName(obj->GetLayer()));
                w.Str(layerName(obj->GetLastLayer())).End();
            } else {
                const C2PointD& line = obj->GetLine();
                w.Key(obj->IsArc() ? "ARC" : "SEG").Str(net->GetName()).Str(layerName(obj->GetLayer())).Num(obj->GetWidth());
                w.Num(line.p1.x).Num(line.p1.y).Num(line.p2.x).Num(line.p2.y);
                if (obj->IsArc()) w.Num(obj->GetCenter().x).Num(obj->GetCenter().y).Word(kDirections[obj->IsClockwise() ? 1 : 0]);
                w.End();
            }
        }
    }

    for (int i = 0; i < pdb.GetAreaCount(); ++i) {
        const CPArea* area = pdb.GetArea(i);
        w.Key("AREA").Str(NetName(area->GetNet())).Str(layerName(area->GetLayer())).Points(area->GetOutline()).End();
        for (int j = 0; j < area->GetHoleCount(); ++j) w.Key("HOLE").Points(*area->GetHole(j)).End();
    }

    for (int i = 0; i < pdb.GetTextCount(); ++i) {
        const CPText* text = pdb.GetText(i);
        w.Key("TEXT").Str(layerName(text->GetLayer())).Num(text->GetPosition().x).Num(text->GetPosition().y);
        w.Num(text->GetHeight()).Num(text->GetRotation()).Str(text->GetText()).End();
    }
    w.Key("END").End();
    return CString(std::move(w.out));
}

bool CPdbText::WriteFile(const CPdb& pdb, const CString& path, CString& error) {
    CString problem;
    if (!pdb.Validate(problem)) {
        error.Format("%s: %s", path.GetString(), problem.GetString());
        return false;
    }
    const CString text = Write(pdb);
    return pdbfile::WriteAll(path, text.GetString(), static_cast<size_t>(text.GetLength()), true, error);
}

std::unique_ptr<CPdb> CPdbText::Read(const CString& text, CString& error) {
    std::unique_ptr<CPdb> pdb(new CPdb);
    try {
        TextReader reader(text.str(), *pdb);
        reader.Read();
    } catch (const TextError& e) {
        error = CString(e.message);
        return nullptr;
    }
    return pdb;
}

std::unique_ptr<CPdb> CPdbText::ReadFile(const CString& path, CString& error) {
    return pdbfile::ReadBoard<CPdb>(path, error, [](std::string& bytes, CString& problem) {
        return Read(CString(std::move(bytes)), problem);
    });
}
