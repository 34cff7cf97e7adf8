#include "OdbConvert.h"

#include <cmath>
#include <utility>

#include "OdbGeometry.h"
#include "OdbText.h"

namespace odb {

namespace {
// Positions match when they agree to the micrometre.
uint64_t PositionKey(const CPointD& p) {
    const auto x = static_cast<int64_t>(std::llround(p.x * 1000));
    const auto y = static_cast<int64_t>(std::llround(p.y * 1000));
    return (static_cast<uint64_t>(x) << 32) ^ (static_cast<uint64_t>(y) & 0xffffffffu);
}

uint64_t FeatureKey(int edaLayer, int feature) {
    return (static_cast<uint64_t>(static_cast<uint32_t>(edaLayer)) << 32) | static_cast<uint32_t>(feature);
}

// Clockwise degrees of the format -> counter-clockwise degrees in [0, 360).
double CounterClockwise(double angleCW) {
    double a = std::fmod(-angleCW, 360.0);
    if (a < 0) a += 360;
    if (a >= 360 - 1e-9) a = 0;
    return a + 0.0;  // no negative zero
}

bool IsCopperType(const CString& type) { return type == "SIGNAL" || type == "POWER_GROUND" || type == "MIXED"; }

// The board layer kind of a matrix layer; false for layers that are no drawing (the
// component layers, dielectrics).
bool KindOf(const CODBmatrixLayer& layer, LayerKind& kind) {
    const CString& t = layer.m_Type;
    if (layer.m_Context != "BOARD" && layer.m_Context != "") {
        kind = LayerKind::Document;
        return t != "COMPONENT";
    }
    if (IsCopperType(t)) kind = LayerKind::Copper;
    else if (t == "SOLDER_MASK") kind = LayerKind::Mask;
    else if (t == "SOLDER_PASTE") kind = LayerKind::Paste;
    else if (t == "SILK_SCREEN") kind = LayerKind::Silk;
    else if (t == "DRILL" || t == "ROUT") kind = LayerKind::Drill;
    else if (t == "DOCUMENT") kind = LayerKind::Document;
    else if (t == "COMPONENT" || t == "DIELECTRIC") return false;
    else kind = LayerKind::Other;
    return true;
}

// A package pin's own outline about the pin's centre, in the package's orientation.
CPadOutline PackagePinOutline(const CODBdataPkgPin& pin) {
    CPadOutline outline;
    for (INT_PTR i = 0; i < pin.m_Outline.GetSize(); ++i) {
        const CODBdataPkgObj& obj = *pin.m_Outline.GetAt(i);
        const CPointD p = obj.m_Point - pin.m_Center;
        switch (obj.m_Type) {
            case CODBdataPkgObj::Circle:
                outline.push_back(Circle(p, obj.m_A));
                break;
            case CODBdataPkgObj::Square:
                outline.push_back(CArrayPointD{{p.x - obj.m_A, p.y - obj.m_A}, {p.x + obj.m_A, p.y - obj.m_A},
                                               {p.x + obj.m_A, p.y + obj.m_A}, {p.x - obj.m_A, p.y + obj.m_A}});
                break;
            case CODBdataPkgObj::Rect:
                outline.push_back(CArrayPointD{
                    {p.x, p.y}, {p.x + obj.m_A, p.y}, {p.x + obj.m_A, p.y + obj.m_B}, {p.x, p.y + obj.m_B}});
                break;
            case CODBdataPkgObj::Contour:
                for (const CODBContour& contour : obj.m_Contours) {
                    CArrayPointD points = contour.m_Points;
                    for (INT_PTR k = 0; k < points.GetSize(); ++k) points[k] = points[k] - pin.m_Center;
                    outline.push_back(points);
                }
                break;
        }
    }
    return outline;
}
}  // namespace

bool BoardBuilder::IsDrill(const CODBmatrixLayer& layer) { return layer.m_Type == "DRILL"; }

BoardBuilder::BoardBuilder(CPdb& pdb, const JobFiles& files, double jobUnitsMM, const StepRecords& step,
                           bool drillToVia, Log& log)
    : m_Pdb(pdb), m_Files(files), m_JobUnitsMM(jobUnitsMM), m_Step(step), m_DrillToVia(drillToVia), m_Log(log) {
    // Board layers in stack order: the BOARD layers by row, then the others.
    for (int pass = 0; pass < 2; ++pass) {
        for (const CODBmatrixLayer* layer : step.layers) {
            const bool board = layer->m_Context == "BOARD" || layer->m_Context.IsEmpty();
            LayerKind kind;
            if (board != (pass == 0) || !KindOf(*layer, kind)) continue;
            if (m_Pdb.GetLayerManager().AddLayer(layer->m_Name, layer->m_Name, kind)) {
                m_DbLayer[ToUpper(layer->m_Name.str())] = m_Pdb.GetLayerManager().GetLayerCount() - 1;
            } else {
                m_Log.Warn("matrix/matrix", 0, "layer '" + layer->m_Name.str() + "' named twice, the second skipped");
            }
        }
    }
    // Nets: the NET records in file order; "$NONE$" holds what is on no net.
    const EdaData& eda = step.eda;
    for (INT_PTR i = 0; i < eda.nets.GetSize(); ++i) {
        const CString& name = eda.nets.GetAt(i)->m_Name;
        CPNet* net = nullptr;
        if (!name.IsEmpty() && name != "$NONE$") {
            net = m_Pdb.FindNet(name);
            if (!net) net = m_Pdb.AddNet(name);
        }
        m_Nets.push_back(net);
        for (INT_PTR s = 0; s < eda.nets.GetAt(i)->m_Subnets.GetSize(); ++s) {
            const CODBSnt* snt = eda.nets.GetAt(i)->m_Subnets.GetAt(s);
            for (INT_PTR k = 0; k < snt->m_Features.GetSize(); ++k) {
                const CODBdataNetObj* fid = snt->m_Features.GetAt(k);
                const uint64_t key = FeatureKey(fid->m_Layer, fid->m_Feature);
                m_FeatureNet.emplace(key, static_cast<int>(i));
                if (snt->m_Type == CODBSnt::Toeprint && snt->m_Component >= 0 && snt->m_Pin >= 0) {
                    m_FeatureToe.emplace(key, ToeRef{snt->m_Bottom, snt->m_Component, snt->m_Pin});
                }
            }
        }
    }
    const COwningArray<CODBcmp>* sides[2] = {&step.top, &step.bottom};
    for (int side = 0; side < 2; ++side) {
        const COwningArray<CODBcmp>& comps = *sides[side];
        m_Pads[side].resize(comps.GetSize());
        m_Drills[side].resize(comps.GetSize());
        for (INT_PTR c = 0; c < comps.GetSize(); ++c) {
            const CODBcmpToeArray& toes = comps.GetAt(c)->m_Toes;
            m_Pads[side][c].resize(toes.GetSize());
            m_Drills[side][c].resize(toes.GetSize());
            for (INT_PTR t = 0; t < toes.GetSize(); ++t) {
                m_ToeAt[side].emplace(PositionKey(toes.GetAt(t)->m_Position),
                                      ToeRef{side == 1, static_cast<int>(c), static_cast<int>(t)});
            }
        }
    }
}

CPNet* BoardBuilder::NetOf(int edaNet) const {
    return edaNet >= 0 && edaNet < static_cast<int>(m_Nets.size()) ? m_Nets[edaNet] : nullptr;
}

int BoardBuilder::FeatureNet(int edaLayer, int feature) const {
    if (edaLayer < 0) return -1;
    auto it = m_FeatureNet.find(FeatureKey(edaLayer, feature));
    return it == m_FeatureNet.end() ? -1 : it->second;
}

const BoardBuilder::ToeRef* BoardBuilder::FeatureToe(int edaLayer, int feature) const {
    if (edaLayer < 0) return nullptr;
    auto it = m_FeatureToe.find(FeatureKey(edaLayer, feature));
    return it == m_FeatureToe.end() ? nullptr : &it->second;
}

const SymbolShape* BoardBuilder::Symbol(const CODBlayer& layer, int index, const std::string& file) {
    // Looked up once per symbol of the layer, not once per feature.
    if (m_ShapesOf != &layer) {
        m_ShapesOf = &layer;
        m_Shapes.assign(static_cast<size_t>(layer.m_Symbols.GetSize()), {false, nullptr});
    }
    if (index < 0 || index >= static_cast<int>(m_Shapes.size())) return FindSymbol(layer, index, file);
    if (!m_Shapes[index].first) m_Shapes[index] = {true, FindSymbol(layer, index, file)};
    return m_Shapes[index].second;
}

const SymbolShape* BoardBuilder::FindSymbol(const CODBlayer& layer, int index, const std::string& file) {
    const CODBSpecialSymbol* symbol = layer.m_Symbols.GetAt(index);
    if (!symbol) {
        m_Log.WarnOnce(file, 0, "feature with a symbol number not in the table ($" + std::to_string(index) + "), skipped");
        return nullptr;
    }
    const std::string key = symbol->m_Name.str() + "@" + std::to_string(symbol->m_UnitMM);
    auto found = m_Symbols.find(key);
    if (found == m_Symbols.end()) {
        SymbolShape shape;
        if (!StandardSymbol(symbol->m_Name.str(), symbol->m_UnitMM, shape)) {
            const SymbolShape* user = UserSymbol(symbol->m_Name.str(), symbol->m_UnitMM);
            if (user) {
                shape = *user;
            } else {
                m_Log.Warn(file, symbol->m_Line, "unknown symbol '" + symbol->m_Name.str() + "', its features skipped");
            }
        }
        found = m_Symbols.emplace(key, std::move(shape)).first;
    }
    return found->second.outline.empty() ? nullptr : &found->second;
}

const SymbolShape* BoardBuilder::UserSymbol(const std::string& name, double unitMM) {
    const std::string key = "symbols/" + ToLower(name) + "/features";
    const std::string* text = m_Files.Find(key);
    if (!text) return nullptr;
    CODBlayer symbolLayer;
    const std::string file = m_Files.DisplayName(key);
    ParseFeatures(*text, file, m_JobUnitsMM, symbolLayer, m_Log);
    SymbolShape shape;
    for (INT_PTR i = 0; i < symbolLayer.m_Objects.GetSize(); ++i) {
        const CODBlayObj* obj = symbolLayer.m_Objects.GetAt(i);
        if (!obj->m_Positive) continue;
        if (obj->m_Kind == CODBlayObj::Surface) {
            for (const CODBContour& contour : obj->m_Contours) shape.outline.push_back(contour.m_Points);
        } else if (obj->m_Kind == CODBlayObj::Pad) {
            const SymbolShape* pad = FindSymbol(symbolLayer, obj->m_Symbol, file);
            if (!pad) continue;
            for (CArrayPointD contour : pad->outline) {
                for (INT_PTR k = 0; k < contour.GetSize(); ++k) {
                    contour[k] = Place(contour[k], obj->m_Angle, obj->m_Mirror) + obj->m_P1;
                }
                shape.outline.push_back(contour);
            }
        }
    }
    if (shape.outline.empty()) return nullptr;
    CRectD box;
    for (const CArrayPointD& contour : shape.outline) box.Include(contour.GetBoundingRect());
    shape.width = box.Width();
    shape.height = box.Height();
    (void)unitMM;  // a user symbol's sizes are those of its own features file
    const std::string cacheKey = "user:" + name;
    return &(m_Symbols[cacheKey] = std::move(shape));
}

void BoardBuilder::ConvertDrill(const CODBlayer& layer, int edaLayer, const std::string& file) {
    const CODBmatrixLayer& matrix = *layer.m_pMatrix;
    CPDBLayerManager& layers = m_Pdb.GetLayerManager();
    int from = layers.GetTopCopperIndex(), to = layers.GetBottomCopperIndex();
    auto find = [&](const CString& name, int& index) {
        auto it = m_DbLayer.find(ToUpper(name.str()));
        if (it != m_DbLayer.end() && layers.IsCopperLayer(it->second)) index = it->second;
    };
    find(matrix.m_StartName, from);
    find(matrix.m_EndName, to);
    if (from > to) std::swap(from, to);
    int skipped = 0, unplaced = 0;
    for (INT_PTR k = 0; k < layer.m_Objects.GetSize(); ++k) {
        const CODBlayObj* obj = layer.m_Objects.GetAt(k);
        if (obj->m_Kind != CODBlayObj::Pad) {
            if (obj->m_Kind != CODBlayObj::Barcode) ++skipped;
            continue;
        }
        const SymbolShape* shape = Symbol(layer, obj->m_Symbol, file);
        if (!shape) continue;
        const ToeRef* toe = FeatureToe(edaLayer, static_cast<int>(k));
        const uint64_t at = PositionKey(obj->m_P1);
        for (int side = 0; side < 2 && !toe; ++side) {
            auto it = m_ToeAt[side].find(at);
            if (it != m_ToeAt[side].end()) toe = &it->second;
        }
        if (toe) {
            std::vector<std::vector<double>>& drills = m_Drills[toe->bottom ? 1 : 0];
            if (toe->cmp < static_cast<int>(drills.size()) && toe->pin < static_cast<int>(drills[toe->cmp].size())) {
                drills[toe->cmp][toe->pin] = shape->width;
            }
            continue;
        }
        if (!m_DrillToVia || from < 0) {
            ++unplaced;
            continue;
        }
        auto existing = m_ViaAt.find(at);
        if (existing != m_ViaAt.end()) continue;  // a second drill layer's hole at the same place
        Via via;
        via.position = obj->m_P1;
        via.drill = shape->width;
        via.from = from;
        via.to = to;
        via.net = FeatureNet(edaLayer, static_cast<int>(k));
        m_ViaAt.emplace(at, m_Vias.size());
        m_Vias.push_back(via);
    }
    if (skipped) m_Log.Warn(file, 0, std::to_string(skipped) + " slots or other non-hole features not kept");
    if (unplaced) m_Log.Warn(file, 0, std::to_string(unplaced) + " holes at no pin not kept (no via made)");
}

void BoardBuilder::AddSurface(CODBlayObj& obj, int dbLayer, CPNet* net) {
    CPArea* area = nullptr;
    for (CODBContour& contour : obj.m_Contours) {
        if (contour.m_Points.GetSize() < 3) continue;
        if (!contour.m_Hole) {
            area = m_Pdb.AddArea(dbLayer, net);
            area->GetOutline() = std::move(contour.m_Points);
        } else if (area) {
            *area->AddHole() = std::move(contour.m_Points);
        }
    }
}

void BoardBuilder::AddPadArea(const SymbolShape& shape, const CODBlayObj& obj, int dbLayer, CPNet* net) {
    CPArea* area = nullptr;
    for (CArrayPointD contour : shape.outline) {
        if (contour.GetSize() < 3) continue;
        for (INT_PTR k = 0; k < contour.GetSize(); ++k) {
            contour[k] = Place(contour[k], obj.m_Angle, obj.m_Mirror) + obj.m_P1;
        }
        if (area && area->GetOutline().ContainsPoint(contour[0])) {
            *area->AddHole() = contour;
        } else {
            area = m_Pdb.AddArea(dbLayer, net);
            area->GetOutline() = contour;
        }
    }
}

void BoardBuilder::ConvertLayer(CODBlayer& layer, const std::string& file) {
    m_ShapesOf = nullptr;  // another layer may sit where the last one was
    auto found = m_DbLayer.find(ToUpper(layer.m_Name.str()));
    if (found == m_DbLayer.end() || !layer.m_pMatrix) return;
    const int dbLayer = found->second;
    int edaLayer = -1;
    for (size_t i = 0; i < m_Step.eda.layers.size(); ++i) {
        if (m_Step.eda.layers[i] == ToUpper(layer.m_Name.str())) edaLayer = static_cast<int>(i);
    }
    if (IsDrill(*layer.m_pMatrix)) {
        ConvertDrill(layer, edaLayer, file);
        return;
    }
    CPDBLayerManager& layers = m_Pdb.GetLayerManager();
    const bool copper = layers.IsCopperLayer(dbLayer);
    const int outerSide = dbLayer == layers.GetTopCopperIndex() ? 0 : dbLayer == layers.GetBottomCopperIndex() ? 1 : -1;
    int negative = 0, noNet = 0, notKept = 0;
    for (INT_PTR k = 0; k < layer.m_Objects.GetSize(); ++k) {
        CODBlayObj& obj = *layer.m_Objects.GetAt(k);
        if (obj.m_Kind == CODBlayObj::Barcode) continue;
        if (!obj.m_Positive) {
            ++negative;
            continue;
        }
        if (obj.m_Kind == CODBlayObj::Text) {
            m_Pdb.AddText(dbLayer, obj.m_Text, obj.m_P1, obj.m_TextHeight, CounterClockwise(obj.m_Angle));
            continue;
        }
        CPNet* net = copper ? NetOf(FeatureNet(edaLayer, static_cast<int>(k))) : nullptr;
        if (obj.m_Kind == CODBlayObj::Surface) {
            AddSurface(obj, dbLayer, net);
            continue;
        }
        if (!copper) {
            ++notKept;
            continue;
        }
        const SymbolShape* shape = Symbol(layer, obj.m_Symbol, file);
        if (!shape) continue;
        if (obj.m_Kind == CODBlayObj::Pad) {
            const ToeRef* toe = FeatureToe(edaLayer, static_cast<int>(k));
            const bool linked = toe != nullptr;
            const uint64_t at = PositionKey(obj.m_P1);
            for (int side : {outerSide == 1 ? 1 : 0, outerSide == 1 ? 0 : 1}) {
                if (toe) break;
                auto it = m_ToeAt[side].find(at);
                if (it != m_ToeAt[side].end()) toe = &it->second;
            }
            if (toe) {
                const int side = toe->bottom ? 1 : 0;
                if (toe->cmp < static_cast<int>(m_Pads[side].size()) &&
                    toe->pin < static_cast<int>(m_Pads[side][toe->cmp].size())) {
                    PadFound& pad = m_Pads[side][toe->cmp][toe->pin];
                    const int rank = (linked ? 2 : 0) + (outerSide == side ? 1 : 0);
                    if (rank > pad.rank) pad = PadFound{shape, obj.m_P1, obj.m_Angle, obj.m_Mirror, rank};
                }
                continue;
            }
            auto via = m_ViaAt.find(at);
            if (via != m_ViaAt.end()) {
                Via& v = m_Vias[via->second];
                v.pad = std::max(v.pad, std::max(shape->width, shape->height));
                if (v.net < 0) v.net = FeatureNet(edaLayer, static_cast<int>(k));
                continue;
            }
            AddPadArea(*shape, obj, dbLayer, net);
            continue;
        }
        if (!net) {
            ++noNet;
            continue;
        }
        const C2PointD line(obj.m_P1, obj.m_P2);
        if (obj.m_Kind == CODBlayObj::Line) {
            net->GetRoute().AddSegment(dbLayer, shape->width, line);
        } else {
            net->GetRoute().AddArc(dbLayer, shape->width, line, obj.m_Center, obj.m_Clockwise);
        }
    }
    if (negative) m_Log.Warn(file, 0, std::to_string(negative) + " negative features not kept");
    if (noNet) m_Log.Warn(file, 0, std::to_string(noNet) + " lines and arcs on no net not kept");
    if (notKept) {
        m_Log.Warn(file, 0, std::to_string(notKept) + " pads, lines and arcs not kept (only surfaces and texts are kept on this kind of layer)");
    }
}

void BoardBuilder::PlacePins(const COwningArray<CODBcmp>& comps, bool bottom) {
    const int side = bottom ? 1 : 0;
    int withoutPad = 0;
    for (INT_PTR c = 0; c < comps.GetSize(); ++c) {
        const CODBcmp& cmp = *comps.GetAt(c);
        if (cmp.m_Reference.IsEmpty()) continue;  // a malformed record's placeholder
        const CODBdataPkg* pkg = m_Step.eda.packages.GetAt(cmp.m_Package);
        const CString packageName = pkg ? pkg->m_Name : CString();
        const CString partName = cmp.m_Part.IsEmpty() ? packageName : cmp.m_Part;
        CPPart* part = nullptr;
        if (!partName.IsEmpty()) {
            part = m_Pdb.FindPart(partName);
            if (!part) part = m_Pdb.AddPart(partName, packageName);
        }
        CPComp* comp = m_Pdb.AddComp(cmp.m_Reference, part, bottom ? CompSide::Bottom : CompSide::Top, cmp.m_Position,
                                     CounterClockwise(cmp.m_Rotation));
        if (!comp) {
            m_Log.Warn(m_Step.edaFile, 0, "component '" + cmp.m_Reference.str() + "' placed twice, the second skipped");
            continue;
        }
        comp->SetMirrored(cmp.m_Mirror);
        for (INT_PTR t = 0; t < cmp.m_Toes.GetSize(); ++t) {
            const CODBcmpToe& toe = *cmp.m_Toes.GetAt(t);
            CString name = toe.m_Name;
            if (name.IsEmpty() && pkg && pkg->m_Pins.GetAt(toe.m_Pin)) name = pkg->m_Pins.GetAt(toe.m_Pin)->m_Name;
            if (name.IsEmpty()) continue;
            const PadFound& pad = m_Pads[side][c][t];
            const double drill = m_Drills[side][c][t];
            CPRefPin* pin = nullptr;
            const CODBdataPkgPin* pkgPin = pkg ? pkg->m_Pins.GetAt(toe.m_Pin) : nullptr;
            CPadOutline pkgOutline = !pad.shape && pkgPin ? PackagePinOutline(*pkgPin) : CPadOutline();
            if (!pad.shape && !pkgOutline.empty()) {
                // No pad on copper: the package's own outline of the pin, placed as the component.
                for (CArrayPointD& contour : pkgOutline) {
                    for (INT_PTR k = 0; k < contour.GetSize(); ++k) {
                        contour[k] = Place(contour[k], cmp.m_Rotation, cmp.m_Mirror);
                    }
                }
                pin = comp->AddPin(name, toe.m_Position, PadShape::Polygon, 0, 0, 0, drill);
                pin->SetPadOutline(std::move(pkgOutline));
            } else if (!pad.shape) {
                ++withoutPad;
                pin = comp->AddPin(name, toe.m_Position, PadShape::Round, drill, drill, 0, drill);
            } else if (pad.shape->kind != PadShape::Polygon && pad.position.Distance(toe.m_Position) < 1e-6) {
                const double angle = pad.shape->kind == PadShape::Round ? 0 : CounterClockwise(pad.angleCW);
                pin = comp->AddPin(name, toe.m_Position, pad.shape->kind, pad.shape->width, pad.shape->height, angle,
                                   drill);
            } else {
                pin = comp->AddPin(name, toe.m_Position, PadShape::Polygon, pad.shape->width, pad.shape->height, 0,
                                   drill);
                CPadOutline outline = pad.shape->outline;
                const CPointD offset = pad.position - toe.m_Position;
                for (CArrayPointD& contour : outline) {
                    for (INT_PTR k = 0; k < contour.GetSize(); ++k) {
                        contour[k] = Place(contour[k], pad.angleCW, pad.mirror) + offset;
                    }
                }
                pin->SetPadOutline(std::move(outline));
            }
            if (CPNet* net = NetOf(toe.m_Net)) net->AddPin(pin);
        }
    }
    if (withoutPad) {
        m_Log.Warn(bottom ? "comp_+_bot" : "comp_+_top", 0,
                   std::to_string(withoutPad) + " pins without a pad on copper or in their package: a round pad of the drill size stands in");
    }
}

void BoardBuilder::Finish(const CODBlayer* profile, const std::string& profileFile) {
    if (profile) {
        for (INT_PTR i = 0; i < profile->m_Objects.GetSize(); ++i) {
            const CODBlayObj* obj = profile->m_Objects.GetAt(i);
            if (obj->m_Kind != CODBlayObj::Surface) continue;
            for (const CODBContour& contour : obj->m_Contours) {
                if (contour.m_Hole || contour.m_Points.GetSize() < 3) continue;
                if (m_Pdb.GetOutline().GetSize() == 0) {
                    m_Pdb.GetOutline() = contour.m_Points;
                } else {
                    m_Log.Warn(profileFile, 0, "a second outline island, not kept");
                }
            }
        }
    }
    PlacePins(m_Step.top, false);
    PlacePins(m_Step.bottom, true);
    int noNet = 0;
    for (const Via& via : m_Vias) {
        CPNet* net = NetOf(via.net);
        if (!net) {
            ++noNet;
            continue;
        }
        net->GetRoute().AddVia(via.position, via.pad > 0 ? via.pad : via.drill, via.drill, via.from, via.to);
    }
    if (noNet) m_Log.Warn("drill layers", 0, std::to_string(noNet) + " vias on no net not kept");
}

}  // namespace odb
