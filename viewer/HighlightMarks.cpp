#include "HighlightMarks.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "BoardQueries.h"

namespace viewer {
namespace {

// Walks one highlight request over the board and marks what it covers.
class MarkCollector {
public:
    MarkCollector(const CPdb& board, Marks& marks) : m_board(board), m_marks(marks) {}

    void Add(const Highlight& h) {
        m_color = FromColorRef(h.color);
        m_limited = false;
        m_limit.clear();
        switch (h.what) {
        case Highlight::What::Objects:
            if (h.functionType == 3) LimitTo(h.layers);
            for (const std::string& name : h.names) Object(h.objectKind, name);
            break;
        case Highlight::What::RefPins:
            if (const CPComp* comp = m_board.FindComp(CString(h.ref)))
                for (const std::string& name : h.names)
                    if (const CPRefPin* pin = comp->FindPin(CString(name))) Pad(*pin);
            break;
        case Highlight::What::NetSection:
            if (h.names.size() == 5) Section(h.names);
            break;
        case Highlight::What::NetSegments:
            if (!h.names.empty())
                if (const CPNet* net = m_board.FindNet(CString(h.names[0])))
                    for (int index : h.segments)
                        if (const CPRouteDObj* object = board::NetSegment(*net, index)) m_marks.routes[object] = m_color;
            break;
        }
    }

private:
    void LimitTo(const std::vector<std::string>& names) {
        m_limited = true;
        const std::set<std::string> wanted(names.begin(), names.end());
        const CPDBLayerManager& layers = m_board.GetLayerManager();
        for (int i = 0; i < layers.GetLayerCount(); ++i)
            if (NamesLayer(wanted, *layers.GetLayer(i))) m_limit.insert(i);
    }

    bool Allowed(int layer) const { return !m_limited || m_limit.count(layer) > 0; }

    void Object(int kind, const std::string& name) {
        if (kind == board::Nets) {
            if (const CPNet* net = m_board.FindNet(CString(name))) Net(*net);
        } else if (kind == board::Components) {
            if (const CPComp* comp = m_board.FindComp(CString(name))) Comp(*comp);
        } else if (kind == board::Pins) {
            if (const CPRefPin* pin = board::FindRefPin(m_board, name)) Pad(*pin);
        }
    }

    void Pad(const CPRefPin& pin) {
        if (m_limited) {
            bool on = false;
            for (int layer : m_limit) on = on || m_board.IsPadOnLayer(pin, layer);
            if (!on) return;
        }
        m_marks.pads[&pin] = m_color;
    }

    void Route(const CPRouteDObj& object) {
        if (m_limited) {
            bool on = false;
            for (int layer : m_limit) on = on || object.IsOnLayer(layer);
            if (!on) return;
        }
        m_marks.routes[&object] = m_color;
    }

    void Net(const CPNet& net) {
        for (INT_PTR i = 0; i < net.GetPins().GetSize(); ++i) Pad(*net.GetPins().GetAt(i));
        for (int i = 0; i < net.GetRoute().GetCount(); ++i) Route(*net.GetRoute().GetAt(i));
        for (INT_PTR i = 0; i < net.GetAreas().GetSize(); ++i) {
            const CPArea* area = net.GetAreas().GetAt(i);
            if (Allowed(area->GetLayer())) m_marks.areas[area] = m_color;
        }
    }

    void Comp(const CPComp& comp) {
        for (int i = 0; i < comp.GetPinCount(); ++i) Pad(*comp.GetPin(i));
        if (!m_limited) m_marks.bodies[&comp] = m_color;
    }

    // The net's routing between two pins: the path of fewest tracks from one pin's
    // centre to the other's, through track ends and vias that meet at the same point.
    void Section(const std::vector<std::string>& names) {
        const CPNet* net = m_board.FindNet(CString(names[0]));
        if (!net) return;
        const CPRefPin* from = m_board.FindPin(CString(names[1]), CString(names[2]));
        const CPRefPin* to = m_board.FindPin(CString(names[3]), CString(names[4]));
        if (from) Pad(*from);
        if (to) Pad(*to);
        if (!from || !to) return;

        std::map<std::pair<long long, long long>, int> nodeOf;
        auto node = [&](const CPointD& p) {
            const auto key = std::make_pair(std::llround(p.x * 1e4), std::llround(p.y * 1e4));
            return nodeOf.emplace(key, static_cast<int>(nodeOf.size())).first->second;
        };
        const CPRouteNet& route = net->GetRoute();
        std::vector<std::vector<std::pair<int, int>>> edges;  // node -> (other node, route index)
        auto grow = [&](int n) {
            if (static_cast<int>(edges.size()) <= n) edges.resize(static_cast<size_t>(n) + 1);
        };
        for (int i = 0; i < route.GetCount(); ++i) {
            const CPRouteDObj* object = route.GetAt(i);
            if (object->IsVia()) continue;
            const int a = node(object->GetLine().p1), b = node(object->GetLine().p2);
            grow(std::max(a, b));
            edges[static_cast<size_t>(a)].emplace_back(b, i);
            edges[static_cast<size_t>(b)].emplace_back(a, i);
        }
        const int start = node(from->GetPosition()), goal = node(to->GetPosition());
        grow(std::max(start, goal));
        std::vector<std::pair<int, int>> cameFrom(edges.size(), std::make_pair(-1, -1));
        std::deque<int> queue{start};
        cameFrom[static_cast<size_t>(start)] = std::make_pair(start, -1);
        while (!queue.empty() && cameFrom[static_cast<size_t>(goal)].first < 0) {
            const int at = queue.front();
            queue.pop_front();
            for (const auto& [next, index] : edges[static_cast<size_t>(at)]) {
                if (cameFrom[static_cast<size_t>(next)].first >= 0) continue;
                cameFrom[static_cast<size_t>(next)] = std::make_pair(at, index);
                queue.push_back(next);
            }
        }
        if (cameFrom[static_cast<size_t>(goal)].first < 0) return;
        std::unordered_set<int> onPath{goal};
        for (int at = goal; at != start; at = cameFrom[static_cast<size_t>(at)].first) {
            Route(*route.GetAt(cameFrom[static_cast<size_t>(at)].second));
            onPath.insert(cameFrom[static_cast<size_t>(at)].first);
        }
        for (int i = 0; i < route.GetCount(); ++i)
            if (route.GetAt(i)->IsVia() && onPath.count(node(route.GetAt(i)->GetPosition()))) Route(*route.GetAt(i));
        for (INT_PTR i = 0; i < net->GetPins().GetSize(); ++i)
            if (onPath.count(node(net->GetPins().GetAt(i)->GetPosition()))) Pad(*net->GetPins().GetAt(i));
    }

    const CPdb& m_board;
    Marks& m_marks;
    Rgb m_color;
    bool m_limited = false;
    std::set<int> m_limit;
};

}  // namespace

bool NamesLayer(const std::set<std::string>& names, const CPLay& layer) {
    return names.count(layer.GetName().str()) > 0 || names.count(layer.GetEcadName().str()) > 0;
}

void CollectMarks(const CPdb& board, const Highlight& highlight, Marks& marks) {
    MarkCollector(board, marks).Add(highlight);
}

CRectD MarkedExtent(const CPdb& board, const Highlight& highlight) {
    Marks marks;
    CollectMarks(board, highlight, marks);
    CRectD box;
    for (const auto& pad : marks.pads) box.Include(pad.first->GetPadRect());
    for (const auto& route : marks.routes) box.Include(route.first->GetBoundingRect());  // a via: its pad
    for (const auto& area : marks.areas) box.Include(area.first->GetBoundingRect());
    for (const auto& body : marks.bodies) box.Include(body.first->GetBoundingRect());
    return box;
}

CRectD ZoomAreaAround(const CRectD& box) {
    CRectD area = box;
    area.Inflate(std::max(std::max(box.Width(), box.Height()) / 4, kZoomToMargin));
    return area;
}

}  // namespace viewer
