#include "BoardGenerator.h"

#include <cmath>
#include <deque>
#include <random>
#include <vector>

namespace {

constexpr double kCell = 10;  // grid pitch of the components, mm

struct PinTemplate {
    double x, y;
    PadShape shape;
    double sizeX, sizeY, drill;
};

struct PartTemplate {
    const char* name;
    const char* package;
    std::vector<PinTemplate> pins;
};

std::vector<PartTemplate> MakeTemplates() {
    std::vector<PartTemplate> parts;
    parts.push_back({"RES-10K-0603", "0603",
                     {{-0.8, 0, PadShape::Rect, 0.9, 0.95, 0}, {0.8, 0, PadShape::Rect, 0.9, 0.95, 0}}});
    parts.push_back({"CAP-100N-0402", "0402",
                     {{-0.5, 0, PadShape::Rect, 0.6, 0.6, 0}, {0.5, 0, PadShape::Rect, 0.6, 0.6, 0}}});
    PartTemplate soic{"IC-OPAMP-SOIC8", "SOIC-8", {}};
    for (int k = 0; k < 4; ++k) soic.pins.push_back({-2.7, 1.905 - 1.27 * k, PadShape::Oblong, 1.55, 0.6, 0});
    for (int k = 0; k < 4; ++k) soic.pins.push_back({2.7, -1.905 + 1.27 * k, PadShape::Oblong, 1.55, 0.6, 0});
    parts.push_back(soic);
    PartTemplate header{"CONN-2X5-1.27", "HDR-2X5-P1.27", {}};
    for (int k = 0; k < 10; ++k) {
        header.pins.push_back({k % 2 ? 0.635 : -0.635, 2.54 - 1.27 * (k / 2), k == 0 ? PadShape::Rect : PadShape::Round,
                               1.0, 1.0, 0.5});
    }
    parts.push_back(header);
    return parts;
}

// Part choice per component: 40 % resistors, 30 % capacitors, 20 % ICs, 10 % connectors.
int PickPart(uint32_t r) {
    const uint32_t p = r % 10;
    return p < 4 ? 0 : p < 7 ? 1 : p < 9 ? 2 : 3;
}

CPointD Place(const CPointD& local, const CPointD& origin, double rotation, bool bottom) {
    const double x = bottom ? -local.x : local.x;  // the bottom side is seen mirrored
    const double a = rotation * 3.14159265358979323846 / 180;
    const double c = std::round(std::cos(a)), s = std::round(std::sin(a));  // quarter turns only
    return CPointD(origin.x + x * c - local.y * s, origin.y + x * s + local.y * c);
}

class Generator {
public:
    Generator(int count, uint32_t seed) : m_count(count < 0 ? 0 : count), m_random(seed) {}

    std::unique_ptr<CPdb> Run() {
        m_pdb.reset(new CPdb);
        CString name;
        name.Format("SYNTH-%d", m_count);
        m_pdb->SetBoardName(name);
        MakeLayers();
        const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(static_cast<double>(m_count)))));
        const int rows = std::max(1, (m_count + columns - 1) / columns);
        const double width = columns * kCell, height = rows * kCell;
        m_pdb->GetOutline() = CArrayPointD{{0, 0}, {width, 0}, {width, height}, {0, height}};

        const std::vector<PartTemplate> templates = MakeTemplates();
        std::vector<CPPart*> parts;
        for (const PartTemplate& t : templates) parts.push_back(m_pdb->AddPart(t.name, t.package));
        m_pdb->Reserve(0, m_count, m_count * 2);
        m_gnd = m_pdb->AddNet("GND");
        m_vcc = m_pdb->AddNet("VCC");

        for (int i = 0; i < m_count; ++i) {
            const int kind = PickPart(m_random());
            const bool bottom = m_random() % 3 == 0 && kind != 3;  // connectors stay on top
            const double rotation = 90.0 * (m_random() % 4);
            const CPointD origin((i % columns + 0.5) * kCell, (i / columns + 0.5) * kCell);
            CString reference;
            reference.Format("%s%d", kind == 0 ? "R" : kind == 1 ? "C" : kind == 2 ? "U" : "J", i + 1);
            CPComp* comp = m_pdb->AddComp(reference, parts[kind], bottom ? CompSide::Bottom : CompSide::Top, origin,
                                          rotation);
            for (size_t k = 0; k < templates[kind].pins.size(); ++k) {
                const PinTemplate& t = templates[kind].pins[k];
                CString pinName;
                pinName.Format("%d", static_cast<int>(k + 1));
                CPRefPin* pin = comp->AddPin(pinName, Place(CPointD(t.x, t.y), origin, rotation, bottom), t.shape,
                                             t.sizeX, t.sizeY, rotation, t.drill);
                if (kind == 3 && k == 0) pin->SetPadOutline(PinOneOutline(t.sizeX, rotation, bottom));
                Connect(pin);
            }
            comp->SetMirrored(bottom);
            m_pdb->AddText(bottom ? m_silkBottom : m_silkTop, reference, origin + CPointD(-1.5, 3.5), 1.0, 0);
        }
        Route();
        AddPlane(m_gnd, m_gndLayer, width, height);
        AddPlane(m_vcc, m_pwrLayer, width, height);
        return std::move(m_pdb);
    }

private:
    // A connector's pin 1: a square with one corner cut off, turned and mirrored with
    // its component.
    static CPadOutline PinOneOutline(double size, double rotation, bool bottom) {
        const double h = size / 2, cut = size / 3;
        CArrayPointD contour;
        for (const CPointD& corner : {CPointD(-h, -h), CPointD(h, -h), CPointD(h, h - cut), CPointD(h - cut, h),
                                      CPointD(-h, h)})
            contour.Add(Place(corner, CPointD(), rotation, bottom));
        return {contour};
    }

    void MakeLayers() {
        CPDBLayerManager& layers = m_pdb->GetLayerManager();
        m_silkTop = layers.AddLayer("SILK_TOP", "SST", LayerKind::Silk)->GetIndex();
        layers.AddLayer("MASK_TOP", "SMT", LayerKind::Mask);
        m_top = layers.AddLayer("TOP", "L1", LayerKind::Copper)->GetIndex();
        m_gndLayer = layers.AddLayer("GND", "L2", LayerKind::Copper)->GetIndex();
        m_pwrLayer = layers.AddLayer("PWR", "L3", LayerKind::Copper)->GetIndex();
        m_bottom = layers.AddLayer("BOTTOM", "L4", LayerKind::Copper)->GetIndex();
        layers.AddLayer("MASK_BOTTOM", "SMB", LayerKind::Mask);
        m_silkBottom = layers.AddLayer("SILK_BOTTOM", "SSB", LayerKind::Silk)->GetIndex();
        layers.AddLayer("OUTLINE", "BOARD_GEOMETRY", LayerKind::Other);
    }

    // GND or VCC now and then; otherwise the oldest open signal net that has no pin of
    // this component yet, or a new net of two or three pins.
    void Connect(CPRefPin* pin) {
        const uint32_t r = m_random() % 20;
        if (r == 0) {
            m_gnd->AddPin(pin);
            return;
        }
        if (r == 1) {
            m_vcc->AddPin(pin);
            return;
        }
        for (auto open = m_open.begin(); open != m_open.end(); ++open) {
            if (open->first->GetPin(open->first->GetPinCount() - 1)->GetComp() == pin->GetComp()) continue;
            open->first->AddPin(pin);
            if (--open->second == 0) m_open.erase(open);
            return;
        }
        CString name;
        name.Format("N%06d", ++m_netNumber);
        CPNet* net = m_pdb->AddNet(name);
        net->AddPin(pin);
        m_open.emplace_back(net, 1 + m_random() % 2);
    }

    int OuterLayer(const CPRefPin* pin, int otherwise) const {
        if (pin->IsThroughHole()) return otherwise;
        return pin->GetComp()->GetSide() == CompSide::Bottom ? m_bottom : m_top;
    }

    // Each signal net: from pin to pin, across then along, with a via at the corner
    // when the two pads lie on different sides.
    void Route() {
        for (int n = 0; n < m_pdb->GetNetCount(); ++n) {
            CPNet* net = m_pdb->GetNet(n);
            if (net == m_gnd || net == m_vcc) continue;
            CPRouteNet& route = net->GetRoute();
            for (int k = 1; k < net->GetPinCount(); ++k) {
                const CPRefPin* a = net->GetPin(k - 1);
                const CPRefPin* b = net->GetPin(k);
                const int layerA = OuterLayer(a, OuterLayer(b, m_top));
                const int layerB = OuterLayer(b, layerA);
                const CPointD corner(b->GetPosition().x, a->GetPosition().y);
                if (layerA == layerB && n % 4 == 0 && RoundCorner(route, layerA, a->GetPosition(), corner, b->GetPosition()))
                    continue;
                if (corner != a->GetPosition()) route.AddSegment(layerA, 0.2, C2PointD(a->GetPosition(), corner));
                if (layerA != layerB) route.AddVia(corner, 0.6, 0.3, m_top, m_bottom);
                if (corner != b->GetPosition()) route.AddSegment(layerB, 0.2, C2PointD(corner, b->GetPosition()));
            }
        }
    }

    // a -> corner -> b with the corner rounded by a quarter arc; false when a leg is
    // too short for it.
    static bool RoundCorner(CPRouteNet& route, int layer, const CPointD& a, const CPointD& corner, const CPointD& b) {
        constexpr double kRadius = 0.5;
        const double leg1 = a.Distance(corner), leg2 = corner.Distance(b);
        if (leg1 < 2 * kRadius || leg2 < 2 * kRadius) return false;
        const CPointD d1((corner.x - a.x) / leg1, (corner.y - a.y) / leg1), d2((b.x - corner.x) / leg2, (b.y - corner.y) / leg2);
        const CPointD start(corner.x - kRadius * d1.x, corner.y - kRadius * d1.y);
        const CPointD end(corner.x + kRadius * d2.x, corner.y + kRadius * d2.y);
        const CPointD centre(start.x + kRadius * d2.x, start.y + kRadius * d2.y);
        const bool clockwise = d1.x * d2.y - d1.y * d2.x < 0;  // a right turn
        route.AddSegment(layer, 0.2, C2PointD(a, start));
        route.AddArc(layer, 0.2, C2PointD(start, end), centre, clockwise);
        route.AddSegment(layer, 0.2, C2PointD(end, b));
        return true;
    }

    void AddPlane(CPNet* net, int layer, double width, double height) {
        CPArea* area = m_pdb->AddArea(layer, net);
        area->GetOutline() = CArrayPointD{{0.5, 0.5}, {width - 0.5, 0.5}, {width - 0.5, height - 0.5}, {0.5, height - 0.5}};
        *area->AddHole() = CArrayPointD{{width * 0.4, height * 0.4},
                                        {width * 0.4, height * 0.6},
                                        {width * 0.6, height * 0.6},
                                        {width * 0.6, height * 0.4}};
    }

    int m_count;
    std::mt19937 m_random;  // its raw output is the same everywhere
    std::unique_ptr<CPdb> m_pdb;
    int m_silkTop = 0, m_silkBottom = 0, m_top = 0, m_bottom = 0, m_gndLayer = 0, m_pwrLayer = 0;
    CPNet* m_gnd = nullptr;
    CPNet* m_vcc = nullptr;
    std::deque<std::pair<CPNet*, uint32_t>> m_open;  // signal nets still taking pins, and how many
    int m_netNumber = 0;
};

}  // namespace

std::unique_ptr<CPdb> GenerateBoard(int componentCount, uint32_t seed) {
    return Generator(componentCount, seed).Run();
}
