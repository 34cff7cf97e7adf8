// Polygon merge session: created, run, read, destroyed. A run unites the copper of
// a net on the named layers (CopperMerge.h); the result stays as it is, indexes and
// all, until the next create, run or destroy.
#include <chrono>
#include <cstdio>

#include "CopperMerge.h"
#include "Dispatcher.h"
#include "PolygonMergeRecords.h"

namespace viewer {
namespace {

constexpr int kNoSession = -200;
constexpr int kBadIndex = -200;

bool ValidIndex(int index, INT_PTR size) { return index >= 0 && index < size; }
bool ValidIndex(int index, size_t size) { return index >= 0 && static_cast<size_t>(index) < size; }

// One axis of a ring, as the reply carries it.
CArrayD Coordinates(const std::vector<CPointD>& ring, double CPointD::*axis) {
    CArrayD out;
    out.SetSize(static_cast<INT_PTR>(ring.size()));
    double* values = out.GetData();
    for (const CPointD& p : ring) *values++ = p.*axis;
    return out;
}

// The image of a reply that carries a kept ring: the ring is lent to the reply for
// the time of its serialisation (swapped in and back), so its points are copied once,
// straight into the bytes sent. swap is the reply's SwapCWPoints or SwapCCWPoints.
Answer LendingAnswer(CKPRCI_PolygonMerge_RV& reply, void (CKPRCI_PolygonMerge_RV::*swap)(CArrayD&, CArrayD&),
                     CArrayD& xs, CArrayD& ys, std::string note) {
    struct Lent {
        CKPRCI_PolygonMerge_RV& reply;
        void (CKPRCI_PolygonMerge_RV::*swap)(CArrayD&, CArrayD&);
        CArrayD& xs;
        CArrayD& ys;
        ~Lent() { (reply.*swap)(xs, ys); }
    };
    (reply.*swap)(xs, ys);
    const Lent back{reply, swap, xs, ys};
    return ReplyAnswer(reply, std::move(note));
}

Answer Run(const CKPRCI_PolygonMerge& request, ViewerContext& context, CKPRCI_PolygonMerge_RV& reply) {
    MergeSession& session = context.view.merge;
    const std::string net = request.GetNetName().str();
    const std::vector<std::string> layers = ToStrings(request.GetLayerNames());
    const auto start = std::chrono::steady_clock::now();
    const CopperMergeResult merged = MergeNetCopper(*context.board, net, layers, request.GetDivision());
    const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    session.outlines.clear();
    session.ran = merged.error == 0;
    size_t holes = 0;
    for (const CopperPolygon& piece : merged.polygons) {
        MergeSession::Outline outline;
        outline.xs = Coordinates(piece.outline, &CPointD::x);
        outline.ys = Coordinates(piece.outline, &CPointD::y);
        for (const std::vector<CPointD>& hole : piece.holes) {
            outline.holeXs.push_back(Coordinates(hole, &CPointD::x));
            outline.holeYs.push_back(Coordinates(hole, &CPointD::y));
        }
        holes += piece.holes.size();
        session.outlines.push_back(std::move(outline));
    }
    reply.SetErrorCode(merged.error);
    char timing[32];
    std::snprintf(timing, sizeof timing, "%.1f ms", ms);
    std::string note = "merge run on " + net + " [" + Joined(layers) + "] division " +
                       std::to_string(SegmentsPerCircle(request.GetDivision())) + ": ";
    if (merged.error)
        note += "error " + std::to_string(merged.error);
    else
        note += std::to_string(merged.shapes) + " shapes on " + std::to_string(merged.layers) + " layers, " +
                std::to_string(session.outlines.size()) + " outlines, " + std::to_string(holes) + " holes";
    if (merged.skippedAreas) note += ", " + std::to_string(merged.skippedAreas) + " areas left out";
    return ReplyAnswer(reply, note + " in " + timing);
}

Answer Merge(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_PolygonMerge&>(base);
    MergeSession& session = context.view.merge;
    const int mode = request.GetMode();
    if (mode == 11) {
        session = MergeSession{};
        return NoAnswer("merge destroyed");
    }
    CKPRCI_PolygonMerge_RV reply(mode);
    if (mode == 1) {
        session = MergeSession{};
        session.open = true;
        return ReplyAnswer(reply, "merge created");
    }
    if (!session.open) {
        reply.SetErrorCode(kNoSession);
        return ReplyAnswer(reply, "no merge session");
    }
    if (mode == 2) return Run(request, context, reply);
    const int cw = request.GetCWIndex(), ccw = request.GetCCWIndex(), point = request.GetPointIndex();
    reply.SetCWPolygonCount(static_cast<int>(session.outlines.size()));
    if (mode == 3) return ReplyAnswer(reply, "outline count");
    if (!ValidIndex(cw, session.outlines.size())) {
        reply.SetErrorCode(kBadIndex);
        return ReplyAnswer(reply, "no outline " + std::to_string(cw));
    }
    MergeSession::Outline& outline = session.outlines[static_cast<size_t>(cw)];
    reply.SetCCWPolygonCount(static_cast<int>(outline.holeXs.size()));
    reply.SetCWPointCount(static_cast<int>(outline.xs.GetSize()));
    if (mode == 4 || mode == 5) return ReplyAnswer(reply, "outline counts");
    if (mode == 9)
        return LendingAnswer(reply, &CKPRCI_PolygonMerge_RV::SwapCWPoints, outline.xs, outline.ys, "outline points");
    if (mode == 7) {
        if (ValidIndex(point, outline.xs.GetSize())) {
            reply.SetPointX(outline.xs[point]);
            reply.SetPointY(outline.ys[point]);
        } else {
            reply.SetErrorCode(kBadIndex);
        }
        return ReplyAnswer(reply, "outline points");
    }
    if (!ValidIndex(ccw, outline.holeXs.size())) {
        reply.SetErrorCode(kBadIndex);
        return ReplyAnswer(reply, "no hole " + std::to_string(ccw));
    }
    CArrayD& xs = outline.holeXs[static_cast<size_t>(ccw)];
    CArrayD& ys = outline.holeYs[static_cast<size_t>(ccw)];
    reply.SetCCWPointCount(static_cast<int>(xs.GetSize()));
    if (mode == 10) return LendingAnswer(reply, &CKPRCI_PolygonMerge_RV::SwapCCWPoints, xs, ys, "hole points");
    if (mode == 8) {
        if (ValidIndex(point, xs.GetSize())) {
            reply.SetPointX(xs[point]);
            reply.SetPointY(ys[point]);
        } else {
            reply.SetErrorCode(kBadIndex);
        }
    }
    return ReplyAnswer(reply, "hole points");
}

}  // namespace

void RegisterPolygonMergeHandlers(Dispatcher& dispatcher) { dispatcher.Register(CKPRCI_PolygonMerge::ClassID, Merge); }

}  // namespace viewer
