// Synthetic boards: size, repeatability, and routing that really joins each net.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <utility>

#include "BoardGenerator.h"
#include "PdbText.h"

namespace {

TEST(BoardGenerator, MakesTheAskedSizeOnBothSidesRepeatably) {
    std::unique_ptr<CPdb> a = GenerateBoard(500, 3);
    ASSERT_EQ(500, a->GetCompCount());
    CString problem;
    EXPECT_TRUE(a->Validate(problem)) << problem.GetString();
    int bottom = 0;
    for (int i = 0; i < a->GetCompCount(); ++i) bottom += a->GetComp(i)->GetSide() == CompSide::Bottom ? 1 : 0;
    EXPECT_GT(bottom, 100);
    EXPECT_LT(bottom, 250);
    EXPECT_NEAR(4.0, static_cast<double>(a->GetTotalPinCount()) / a->GetCompCount(), 0.6);
    EXPECT_EQ(4, a->GetLayerManager().GetCopperLayerCount());

    EXPECT_EQ(CPdbText::Write(*a).str(), CPdbText::Write(*GenerateBoard(500, 3)).str());
    EXPECT_NE(CPdbText::Write(*a).str(), CPdbText::Write(*GenerateBoard(500, 4)).str());
    EXPECT_EQ(0, GenerateBoard(0)->GetCompCount());
}

// Every signal net's segments and vias join all of its pins: pads, segment ends and
// vias that touch (on a shared copper layer, at the same point) are merged until
// one group remains.
TEST(BoardGenerator, RoutingConnectsEverySignalNet) {
    std::unique_ptr<CPdb> pdb = GenerateBoard(400, 11);
    int checked = 0;
    for (int n = 0; n < pdb->GetNetCount(); ++n) {
        const CPNet* net = pdb->GetNet(n);
        if (net->GetName() == "GND" || net->GetName() == "VCC" || net->GetPinCount() < 2) continue;
        // Nodes: (point, layer); a via or a through-hole pad sits on every copper layer.
        std::map<std::pair<std::pair<double, double>, int>, int> node;
        std::vector<int> parent;
        const auto id = [&](const CPointD& p, int layer) {
            auto key = std::make_pair(std::make_pair(p.x, p.y), layer);
            auto found = node.find(key);
            if (found != node.end()) return found->second;
            parent.push_back(static_cast<int>(parent.size()));
            return node[key] = static_cast<int>(parent.size()) - 1;
        };
        std::function<int(int)> root = [&](int i) { return parent[i] == i ? i : parent[i] = root(parent[i]); };
        const auto join = [&](int a, int b) { parent[root(a)] = root(b); };
        const CPDBLayerManager& layers = pdb->GetLayerManager();
        std::vector<int> copper;
        for (int l = 0; l < layers.GetLayerCount(); ++l) {
            if (layers.IsCopperLayer(l)) copper.push_back(l);
        }
        const auto onEveryLayer = [&](const CPointD& p) {
            for (size_t k = 1; k < copper.size(); ++k) join(id(p, copper[k - 1]), id(p, copper[k]));
        };
        std::vector<int> pins;
        for (int k = 0; k < net->GetPinCount(); ++k) {
            const CPRefPin* pin = net->GetPin(k);
            int first = -1;
            for (int l : copper) {
                if (pdb->IsPadOnLayer(*pin, l)) {
                    if (first < 0) first = id(pin->GetPosition(), l);
                    join(first, id(pin->GetPosition(), l));
                }
            }
            ASSERT_GE(first, 0);
            pins.push_back(first);
        }
        const CPRouteNet& route = net->GetRoute();
        for (int k = 0; k < route.GetCount(); ++k) {
            const CPRouteDObj* obj = route.GetAt(k);
            if (obj->IsVia()) {
                onEveryLayer(obj->GetPosition());
            } else {
                join(id(obj->GetLine().p1, obj->GetLayer()), id(obj->GetLine().p2, obj->GetLayer()));
            }
        }
        for (int p : pins) EXPECT_EQ(root(pins[0]), root(p)) << net->GetName().GetString();
        ++checked;
    }
    EXPECT_GT(checked, 100);
}

}  // namespace
