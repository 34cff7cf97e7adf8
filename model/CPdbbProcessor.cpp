#include "CPdbbProcessor.h"

#include <cstdarg>
#include <cstring>
#include <new>
#include <string>

#include "CArchive.h"
#include "GCUtility.h"
#include "PdbFileIO.h"
#include "PdbText.h"
#include "platform.h"

namespace {

const char kMagic[8] = {'K', 'P', 'C', 'B', 'P', 'D', 'B', 'B'};

// Smallest number of bytes each kind of record takes in the data, so that a count is
// checked against what is left before anything is allocated for it. Version 2 adds a
// flags byte to each component.
constexpr size_t kMinPoint = 16, kMinLayer = 6, kMinPart = 2, kMinNet = 1, kMinCompV1 = 35, kMinCompV2 = 36,
                 kMinPin = 57, kMinRouteObj = 44, kMinArea = 12, kMinHole = 2, kMinContour = 2, kMinText = 37;

// Component flags (version 2).
constexpr uint8_t kCompMirrored = 1;

// Points are two doubles, stored in the order and byte order CArchive writes numbers
// in, so a point list is written and read as one block.
static_assert(sizeof(CPointD) == 2 * sizeof(double), "CPointD is x then y");

// ---- Writing ----------------------------------------------------------------

void PutPoints(CArchive& ar, const CArrayPointD& points) {
    ar.WriteCount(static_cast<size_t>(points.GetSize()));
    if (points.GetSize()) ar.Write(points.GetData(), static_cast<size_t>(points.GetSize()) * sizeof(CPointD));
}

// What version 1 cannot hold, or null.
const char* NewerThanVersion1(const CPdb& pdb) {
    const CPDBLayerManager& layers = pdb.GetLayerManager();
    for (int i = 0; i < layers.GetLayerCount(); ++i) {
        if (layers.GetLayer(i)->GetKind() > LayerKind::Other) return "a paste, drill or document layer";
    }
    for (int i = 0; i < pdb.GetCompCount(); ++i) {
        const CPComp* comp = pdb.GetComp(i);
        if (comp->IsMirrored()) return "a mirrored component";
        for (int j = 0; j < comp->GetPinCount(); ++j) {
            if (comp->GetPin(j)->GetShape() == PadShape::Polygon) return "a polygon pad";
        }
    }
    for (int i = 0; i < pdb.GetNetCount(); ++i) {
        const CPRouteNet& route = pdb.GetNet(i)->GetRoute();
        for (int j = 0; j < route.GetCount(); ++j) {
            if (route.GetAt(j)->IsArc()) return "a track arc";
        }
    }
    return nullptr;
}

void PutBoard(CArchive& ar, const CPdb& pdb, int version) {
    ar << pdb.GetBoardName();
    PutPoints(ar, pdb.GetOutline());

    const CPDBLayerManager& layers = pdb.GetLayerManager();
    ar.WriteCount(static_cast<size_t>(layers.GetLayerCount()));
    for (int i = 0; i < layers.GetLayerCount(); ++i) {
        const CPLay* layer = layers.GetLayer(i);
        ar << layer->GetName() << layer->GetEcadName() << static_cast<int32_t>(layer->GetKind());
    }

    ar.WriteCount(static_cast<size_t>(pdb.GetPartCount()));
    for (int i = 0; i < pdb.GetPartCount(); ++i) ar << pdb.GetPart(i)->GetName() << pdb.GetPart(i)->GetPackage();

    ar.WriteCount(static_cast<size_t>(pdb.GetNetCount()));
    for (int i = 0; i < pdb.GetNetCount(); ++i) ar << pdb.GetNet(i)->GetName();

    ar.WriteCount(static_cast<size_t>(pdb.GetCompCount()));
    for (int i = 0; i < pdb.GetCompCount(); ++i) {
        const CPComp* comp = pdb.GetComp(i);
        ar << comp->GetReference() << static_cast<int32_t>(comp->GetPart() ? comp->GetPart()->GetIndex() : -1)
           << static_cast<int32_t>(comp->GetSide()) << comp->GetPosition().x << comp->GetPosition().y
           << comp->GetRotation();
        if (version >= 2) ar << static_cast<uint8_t>(comp->IsMirrored() ? kCompMirrored : 0);
        ar.WriteCount(static_cast<size_t>(comp->GetPinCount()));
        for (int j = 0; j < comp->GetPinCount(); ++j) {
            const CPRefPin* pin = comp->GetPin(j);
            ar << pin->GetName() << pin->GetPosition().x << pin->GetPosition().y
               << static_cast<int32_t>(pin->GetShape()) << pin->GetSizeX() << pin->GetSizeY() << pin->GetPadAngle()
               << pin->GetDrill() << static_cast<int32_t>(pin->GetNet() ? pin->GetNet()->GetIndex() : -1);
            if (pin->GetShape() != PadShape::Polygon) continue;
            ar.WriteCount(pin->GetPadOutline().size());
            for (const CArrayPointD& contour : pin->GetPadOutline()) PutPoints(ar, contour);
        }
    }

    // The routing of each net, in net order.
    for (int i = 0; i < pdb.GetNetCount(); ++i) {
        const CPRouteNet& route = pdb.GetNet(i)->GetRoute();
        ar.WriteCount(static_cast<size_t>(route.GetCount()));
        for (int j = 0; j < route.GetCount(); ++j) {
            const CPRouteDObj* obj = route.GetAt(j);
            ar << static_cast<int32_t>(obj->GetType());
            if (obj->IsVia()) {
                ar << obj->GetPosition().x << obj->GetPosition().y << obj->GetWidth() << obj->GetDrill()
                   << static_cast<int32_t>(obj->GetLayer()) << static_cast<int32_t>(obj->GetLastLayer());
            } else {
                const C2PointD& line = obj->GetLine();
                ar << static_cast<int32_t>(obj->GetLayer()) << obj->GetWidth() << line.p1.x << line.p1.y << line.p2.x
                   << line.p2.y;
                if (obj->IsArc())
                    ar << obj->GetCenter().x << obj->GetCenter().y << static_cast<uint8_t>(obj->IsClockwise() ? 1 : 0);
            }
        }
    }

    ar.WriteCount(static_cast<size_t>(pdb.GetAreaCount()));
    for (int i = 0; i < pdb.GetAreaCount(); ++i) {
        const CPArea* area = pdb.GetArea(i);
        ar << static_cast<int32_t>(area->GetNet() ? area->GetNet()->GetIndex() : -1)
           << static_cast<int32_t>(area->GetLayer());
        PutPoints(ar, area->GetOutline());
        ar.WriteCount(static_cast<size_t>(area->GetHoleCount()));
        for (int j = 0; j < area->GetHoleCount(); ++j) PutPoints(ar, *area->GetHole(j));
    }

    ar.WriteCount(static_cast<size_t>(pdb.GetTextCount()));
    for (int i = 0; i < pdb.GetTextCount(); ++i) {
        const CPText* text = pdb.GetText(i);
        ar << static_cast<int32_t>(text->GetLayer()) << text->GetPosition().x << text->GetPosition().y
           << text->GetHeight() << text->GetRotation() << text->GetText();
    }
}

// Whether pdb can be written as that version; false with the problem.
bool Writable(const CPdb& pdb, int version, CString& error) {
    if (version < CPdbbProcessor::kOldestFormatVersion || version > CPdbbProcessor::kFormatVersion) {
        error.Format("format version %d cannot be written (this program writes %d..%d)", version,
                     CPdbbProcessor::kOldestFormatVersion, CPdbbProcessor::kFormatVersion);
        return false;
    }
    if (!pdb.Validate(error)) return false;
    if (version == 1) {
        if (const char* newer = NewerThanVersion1(pdb)) {
            error.Format("the board holds %s, which format version 1 cannot hold", newer);
            return false;
        }
    }
    return true;
}

// Passes writes on to another file, keeping their count and their CRC-32 as they go,
// so that the data needs no second pass and no copy for its header.
class CrcCountingFile : public CFile {
public:
    explicit CrcCountingFile(CFile& out) : m_out(out) {}
    UINT Read(void*, UINT) override { throw CInvalidArgException(); }
    void Write(const void* buffer, UINT count) override {
        m_crc = Crc32(buffer, count, m_crc);
        m_size += count;
        m_out.Write(buffer, count);
    }
    ULONGLONG Seek(int64_t, UINT) override { throw CInvalidArgException(); }
    ULONGLONG GetLength() const override { return m_size; }
    void SetLength(ULONGLONG) override { throw CInvalidArgException(); }
    ULONGLONG GetPosition() const override { return m_size; }
    uint32_t Crc() const { return m_crc; }

private:
    CFile& m_out;
    uint32_t m_crc = 0;
    ULONGLONG m_size = 0;
};

void PutHeader(CFile& file, int version, uint64_t size, uint32_t crc) {
    CArchive ar(&file, CArchive::store, CPdbbProcessor::kHeaderSize);
    ar.Write(kMagic, sizeof kMagic);
    ar << static_cast<uint32_t>(version) << size << crc;
    ar.Close();
}

// Writes the file's image from the start of an empty file: a header whose size and
// CRC are filled in once the data behind it is written.
void PutImage(CFile& file, const CPdb& pdb, int version) {
    PutHeader(file, version, 0, 0);
    CrcCountingFile data(file);
    {
        CArchive ar(&data, CArchive::store, 1 << 16);
        PutBoard(ar, pdb, version);
        ar.Close();
    }
    file.Seek(0, CFile::begin);
    PutHeader(file, version, data.GetLength(), data.Crc());
}

// ---- Reading ----------------------------------------------------------------

// Contents that cannot be a board: a bad index, an unknown code, a repeated name.
struct FormatError {
    std::string message;
};

class BoardReader {
public:
    BoardReader(CArchive& ar, CPdb& pdb, int version) : m_ar(ar), m_pdb(pdb), m_version(version) {}

    const char* Section() const { return m_section; }

    void Read() {
        m_section = "the board header";
        m_pdb.SetBoardName(String());
        GetPoints(m_pdb.GetOutline());

        m_section = "the layers";
        CPDBLayerManager& layers = m_pdb.GetLayerManager();
        const size_t layerCount = Count(kMinLayer);
        for (size_t i = 0; i < layerCount; ++i) {
            const CString name = String(), ecad = String();
            const int kind = Int();
            const LayerKind last = m_version >= 2 ? LayerKind::Document : LayerKind::Other;
            if (kind < 0 || kind > static_cast<int>(last)) Fail("layer %zu: unknown kind %d", i, kind);
            if (!layers.AddLayer(name, ecad, static_cast<LayerKind>(kind)))
                Fail("layer %zu: empty or repeated name '%s'", i, name.GetString());
        }

        m_section = "the parts";
        const size_t partCount = Count(kMinPart);
        m_pdb.Reserve(static_cast<int>(partCount), 0, 0);
        for (size_t i = 0; i < partCount; ++i) {
            const CString name = String(), package = String();
            if (!m_pdb.AddPart(name, package)) Fail("part %zu: repeated name '%s'", i, name.GetString());
        }

        m_section = "the nets";
        const size_t netCount = Count(kMinNet);
        m_pdb.Reserve(0, 0, static_cast<int>(netCount));
        for (size_t i = 0; i < netCount; ++i) {
            const CString name = String();
            if (!m_pdb.AddNet(name)) Fail("net %zu: empty or repeated name '%s'", i, name.GetString());
        }

        m_section = "the components";
        const size_t compCount = Count(m_version >= 2 ? kMinCompV2 : kMinCompV1);
        m_pdb.Reserve(0, static_cast<int>(compCount), 0);
        for (size_t i = 0; i < compCount; ++i) ReadComp(i);

        m_section = "the routing";
        for (int i = 0; i < m_pdb.GetNetCount(); ++i) ReadRoute(*m_pdb.GetNet(i));

        m_section = "the copper areas";
        const size_t areaCount = Count(kMinArea);
        for (size_t i = 0; i < areaCount; ++i) {
            const int net = Int(), layer = Int();
            CheckNet(net, "copper area", i);
            CheckLayer(layer, "copper area", i);
            CPArea* area = m_pdb.AddArea(layer, m_pdb.GetNet(net));
            GetPoints(area->GetOutline());
            const size_t holes = Count(kMinHole);
            for (size_t j = 0; j < holes; ++j) GetPoints(*area->AddHole());
        }

        m_section = "the texts";
        const size_t textCount = Count(kMinText);
        for (size_t i = 0; i < textCount; ++i) {
            const int layer = Int();
            CheckLayer(layer, "text", i);
            const double x = Double(), y = Double(), height = Double(), rotation = Double();
            m_pdb.AddText(layer, String(), CPointD(x, y), height, rotation);
        }

        m_section = "the end of the data";
        if (m_ar.Remaining() != 0)
            Fail("%llu bytes follow the last text", static_cast<unsigned long long>(m_ar.Remaining()));
    }

private:
    void ReadComp(size_t i) {
        const CString reference = String();
        const int part = Int(), side = Int();
        const double x = Double(), y = Double(), rotation = Double();
        uint8_t flags = 0;
        if (m_version >= 2) m_ar >> flags;
        if (flags & ~kCompMirrored) Fail("component %zu '%s': unknown flags %#x", i, reference.GetString(), static_cast<unsigned>(flags));
        if (part < -1 || part >= m_pdb.GetPartCount())
            Fail("component %zu '%s': part index %d outside 0..%d", i, reference.GetString(), part,
                 m_pdb.GetPartCount() - 1);
        if (side < 0 || side > static_cast<int>(CompSide::NotPlaced))
            Fail("component %zu '%s': unknown side %d", i, reference.GetString(), side);
        CPComp* comp =
            m_pdb.AddComp(reference, m_pdb.GetPart(part), static_cast<CompSide>(side), CPointD(x, y), rotation);
        if (!comp) Fail("component %zu: empty or repeated reference '%s'", i, reference.GetString());
        comp->SetMirrored((flags & kCompMirrored) != 0);
        const size_t pins = Count(kMinPin);
        for (size_t j = 0; j < pins; ++j) {
            const CString name = String();
            const double px = Double(), py = Double();
            const int shape = Int();
            const double sizeX = Double(), sizeY = Double(), angle = Double(), drill = Double();
            const int net = Int();
            const PadShape lastShape = m_version >= 2 ? PadShape::Polygon : PadShape::Oblong;
            if (shape < 0 || shape > static_cast<int>(lastShape))
                Fail("component '%s' pin %zu: unknown pad shape %d", reference.GetString(), j, shape);
            if (net < -1 || net >= m_pdb.GetNetCount())
                Fail("component '%s' pin %zu: net index %d outside 0..%d", reference.GetString(), j, net,
                     m_pdb.GetNetCount() - 1);
            CPRefPin* pin =
                comp->AddPin(name, CPointD(px, py), static_cast<PadShape>(shape), sizeX, sizeY, angle, drill);
            if (net >= 0) m_pdb.GetNet(net)->AddPin(pin);
            if (pin->GetShape() == PadShape::Polygon) ReadPadOutline(*pin, reference, j);
        }
    }

    void ReadPadOutline(CPRefPin& pin, const CString& reference, size_t j) {
        const size_t contours = Count(kMinContour);
        if (contours == 0) Fail("component '%s' pin %zu: a polygon pad without an outline", reference.GetString(), j);
        CPadOutline outline(contours);
        for (CArrayPointD& contour : outline) {
            GetPoints(contour);
            if (contour.GetSize() < 3)
                Fail("component '%s' pin %zu: a pad contour of %d points", reference.GetString(), j,
                     static_cast<int>(contour.GetSize()));
        }
        pin.SetPadOutline(std::move(outline));
    }

    void ReadRoute(CPNet& net) {
        const size_t count = Count(kMinRouteObj);
        CPRouteNet& route = net.GetRoute();
        for (size_t j = 0; j < count; ++j) {
            const int type = Int();
            if (type == CPRouteDObj::Via) {
                const double x = Double(), y = Double(), size = Double(), drill = Double();
                const int from = Int(), to = Int();
                CheckLayer(from, "via", j);
                CheckLayer(to, "via", j);
                if (from > to) Fail("net '%s' via %zu: layers %d..%d run upwards", net.GetName().GetString(), j, from, to);
                route.AddVia(CPointD(x, y), size, drill, from, to);
            } else if (type == CPRouteDObj::Segment) {
                const int layer = Int();
                CheckLayer(layer, "segment", j);
                const double width = Double(), x1 = Double(), y1 = Double(), x2 = Double(), y2 = Double();
                route.AddSegment(layer, width, C2PointD(CPointD(x1, y1), CPointD(x2, y2)));
            } else if (type == CPRouteDObj::Arc && m_version >= 2) {
                const int layer = Int();
                CheckLayer(layer, "arc", j);
                const double width = Double(), x1 = Double(), y1 = Double(), x2 = Double(), y2 = Double();
                const double cx = Double(), cy = Double();
                uint8_t clockwise = 0;
                m_ar >> clockwise;
                if (clockwise > 1)
                    Fail("net '%s' arc %zu: direction %d is neither 0 nor 1", net.GetName().GetString(), j, clockwise);
                route.AddArc(layer, width, C2PointD(CPointD(x1, y1), CPointD(x2, y2)), CPointD(cx, cy), clockwise != 0);
            } else {
                Fail("net '%s' routing %zu: unknown kind %d", net.GetName().GetString(), j, type);
            }
        }
    }

    void CheckLayer(int layer, const char* what, size_t i) {
        if (!m_pdb.GetLayerManager().IsValidLayer(layer))
            Fail("%s %zu: layer index %d outside 0..%d", what, i, layer, m_pdb.GetLayerManager().GetLayerCount() - 1);
    }
    void CheckNet(int net, const char* what, size_t i) {
        if (net < -1 || net >= m_pdb.GetNetCount())
            Fail("%s %zu: net index %d outside 0..%d", what, i, net, m_pdb.GetNetCount() - 1);
    }

    void GetPoints(CArrayPointD& points) {
        const size_t count = Count(kMinPoint);
        points.SetSize(static_cast<INT_PTR>(count));
        if (count) m_ar.Read(points.GetData(), count * sizeof(CPointD));
    }

    size_t Count(size_t minBytesEach) {
        const size_t count = m_ar.ReadCount();
        m_ar.EnsureAvailable(count, minBytesEach);
        return count;
    }
    int Int() {
        int32_t v = 0;
        m_ar >> v;
        return v;
    }
    double Double() {
        double v = 0;
        m_ar >> v;
        return v;
    }
    CString String() {
        CString s;
        m_ar >> s;
        return s;
    }

    [[noreturn]] void Fail(const char* format, ...)
        KPCB_PRINTF_LIKE(2, 3)
    {
        va_list args;
        va_start(args, format);
        CString text;
        text.FormatV(format, args);
        va_end(args);
        throw FormatError{text.str()};
    }

    CArchive& m_ar;
    CPdb& m_pdb;
    const int m_version;
    const char* m_section = "";
};

CString LowerExtension(const CString& path) {
    CString ext = GCUtility::GetInstance().GetSegmntFromFilePath(path, 4);
    ext.MakeLower();
    return ext;
}

}  // namespace

int CPdbbProcessor::SavePDB(const CString& path, CPdb* pdb, int overwrite, int textCopy, int makeFolders) {
    m_LastError.Empty();
    if (!pdb) {
        m_LastError = "no board to save";
        return 0;
    }
    GCUtility& util = GCUtility::GetInstance();
    if (makeFolders == 1) {
        const CString folder = util.GetSegmntFromFilePath(path, 1);
        const platform::Status made = folder.IsEmpty() ? platform::Status() : platform::MakeDirectory(folder.str());
        if (!made) {
            m_LastError.Format("%s: cannot create the folder: %s", folder.GetString(), made.Text());
            return 0;
        }
    }
    CString error;
    if (!Writable(*pdb, kFormatVersion, error)) {
        m_LastError.Format("%s: %s", path.GetString(), error.GetString());
        return 0;
    }
    if (!pdbfile::WriteThrough(path, overwrite != 0, [&](CFile& file) { PutImage(file, *pdb, kFormatVersion); }, error)) {
        m_LastError = error;
        return 0;
    }
    if (textCopy) {
        const CString ext = util.GetSegmntFromFilePath(path, 4);
        const CString textPath = path.Left(path.GetLength() - ext.GetLength()) + ".pdbba";
        if (!CPdbText::WriteFile(*pdb, textPath, error)) {
            m_LastError = error;
            return 0;
        }
    }
    return 1;
}

bool CPdbbProcessor::SavePDBToMemory(const CPdb& pdb, std::vector<unsigned char>& image, CString& error,
                                     int version) {
    if (!Writable(pdb, version, error)) return false;
    CByteFile file;
    PutImage(file, pdb, version);
    image = std::move(file.Bytes());
    return true;
}

std::unique_ptr<CPdb> CPdbbProcessor::LoadPDBFromMemory(const void* data, size_t size, CString& error) {
    if (size == 0) {
        error = "the file is empty";
        return nullptr;
    }
    if (size < kHeaderSize) {
        error.Format("the file is truncated: %zu bytes, fewer than its %zu-byte header", size, kHeaderSize);
        return nullptr;
    }
    CByteFile file(data, size);
    char magic[sizeof kMagic];
    uint32_t version = 0, crc = 0;
    uint64_t dataSize = 0;
    {
        CArchive ar(&file, CArchive::load, static_cast<int>(kHeaderSize));
        ar.Read(magic, sizeof magic);
        ar >> version >> dataSize >> crc;
        ar.Close();
    }
    if (std::memcmp(magic, kMagic, sizeof kMagic) != 0) {
        error = "not a board database file (no KPCBPDBB magic at its start)";
        return nullptr;
    }
    if (version < static_cast<uint32_t>(kOldestFormatVersion) || version > static_cast<uint32_t>(kFormatVersion)) {
        error.Format("format version %u is not supported (this program reads versions %d to %d)", version,
                     kOldestFormatVersion, kFormatVersion);
        return nullptr;
    }
    const size_t present = size - kHeaderSize;
    if (dataSize > present) {
        error.Format("the file is truncated: its header announces %llu bytes of data, %zu are present",
                     static_cast<unsigned long long>(dataSize), present);
        return nullptr;
    }
    if (dataSize < present) {
        error.Format("the file is corrupt: %zu bytes of data where its header announces %llu", present,
                     static_cast<unsigned long long>(dataSize));
        return nullptr;
    }
    const unsigned char* body = static_cast<const unsigned char*>(data) + kHeaderSize;
    if (Crc32(body, present) != crc) {
        error = "the file is corrupt: the checksum of its data does not match";
        return nullptr;
    }

    CByteFile bodyFile(body, present);
    std::unique_ptr<CPdb> pdb(new CPdb);
    const char* section = "";
    try {
        CArchive ar(&bodyFile, CArchive::load, 1 << 16);
        BoardReader reader(ar, *pdb, static_cast<int>(version));
        try {
            reader.Read();
        } catch (...) {
            section = reader.Section();
            throw;
        }
    } catch (const FormatError& e) {
        error.Format("the file is corrupt: %s", e.message.c_str());
        return nullptr;
    } catch (const CArchiveException&) {
        error.Format("the file is corrupt: its data ends inside %s", section);
        return nullptr;
    } catch (const CException& e) {
        error.Format("the file is corrupt: %s in %s", e.what(), section);
        return nullptr;
    } catch (const std::bad_alloc&) {
        error.Format("out of memory while reading %s", section);
        return nullptr;
    }
    return pdb;
}

std::unique_ptr<CPdb> CPdbbProcessor::LoadPDB(const CString& path, CString& error) {
    return pdbfile::ReadBoard<CPdb>(path, error, [](const std::string& bytes, CString& problem) {
        return LoadPDBFromMemory(bytes.data(), bytes.size(), problem);
    });
}

std::unique_ptr<CPdb> CPdbbProcessor::LoadBoardFile(const CString& path, CString& error) {
    if (LowerExtension(path) == ".pdbba") return CPdbText::ReadFile(path, error);
    return LoadPDB(path, error);
}

bool CPdbbProcessor::SaveBoardFile(const CString& path, const CPdb& pdb, CString& error) {
    if (LowerExtension(path) == ".pdbba") return CPdbText::WriteFile(pdb, path, error);
    CString problem;
    if (!Writable(pdb, kFormatVersion, problem)) {
        error.Format("%s: %s", path.GetString(), problem.GetString());
        return false;
    }
    return pdbfile::WriteThrough(path, true, [&](CFile& file) { PutImage(file, pdb, kFormatVersion); }, error);
}
