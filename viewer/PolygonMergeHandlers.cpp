// Polygon merge session: created, run, read, destroyed. This build merges nothing:
// a run leaves an empty result, and every read answers consistently from it.
#include "Dispatcher.h"
#include "PolygonMergeRecords.h"

namespace viewer {
namespace {

constexpr int kNoSession = -200;
constexpr int kBadIndex = -200;

CArrayD ToArray(const std::vector<double>& values) {
    CArrayD out;
    for (double v : values) out.Add(v);
    return out;
}

bool ValidIndex(int index, size_t size) { return index >= 0 && static_cast<size_t>(index) < size; }

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
    if (mode == 2) {
        session.ran = true;
        session.outlines.clear();
        return ReplyAnswer(reply, "merge run on " + request.GetNetName().str() + ": " +
                                      Joined(ToStrings(request.GetLayerNames())));
    }
    const int cw = request.GetCWIndex(), ccw = request.GetCCWIndex(), point = request.GetPointIndex();
    reply.SetCWPolygonCount(static_cast<int>(session.outlines.size()));
    if (mode == 3) return ReplyAnswer(reply, "outline count");
    if (!ValidIndex(cw, session.outlines.size())) {
        reply.SetErrorCode(kBadIndex);
        return ReplyAnswer(reply, "no outline " + std::to_string(cw));
    }
    const MergeSession::Outline& outline = session.outlines[static_cast<size_t>(cw)];
    reply.SetCCWPolygonCount(static_cast<int>(outline.holeXs.size()));
    reply.SetCWPointCount(static_cast<int>(outline.xs.size()));
    if (mode == 4 || mode == 5) return ReplyAnswer(reply, "outline counts");
    if (mode == 7 || mode == 9) {
        if (mode == 9) {
            reply.SetCWPointsX(ToArray(outline.xs));
            reply.SetCWPointsY(ToArray(outline.ys));
        } else if (ValidIndex(point, outline.xs.size())) {
            reply.SetPointX(outline.xs[static_cast<size_t>(point)]);
            reply.SetPointY(outline.ys[static_cast<size_t>(point)]);
        } else {
            reply.SetErrorCode(kBadIndex);
        }
        return ReplyAnswer(reply, "outline points");
    }
    if (!ValidIndex(ccw, outline.holeXs.size())) {
        reply.SetErrorCode(kBadIndex);
        return ReplyAnswer(reply, "no hole " + std::to_string(ccw));
    }
    const std::vector<double>& xs = outline.holeXs[static_cast<size_t>(ccw)];
    const std::vector<double>& ys = outline.holeYs[static_cast<size_t>(ccw)];
    reply.SetCCWPointCount(static_cast<int>(xs.size()));
    if (mode == 10) {
        reply.SetCCWPointsX(ToArray(xs));
        reply.SetCCWPointsY(ToArray(ys));
    } else if (mode == 8) {
        if (ValidIndex(point, xs.size())) {
            reply.SetPointX(xs[static_cast<size_t>(point)]);
            reply.SetPointY(ys[static_cast<size_t>(point)]);
        } else {
            reply.SetErrorCode(kBadIndex);
        }
    }
    return ReplyAnswer(reply, "hole points");
}

}  // namespace

void RegisterPolygonMergeHandlers(Dispatcher& dispatcher) { dispatcher.Register(CKPRCI_PolygonMerge::ClassID, Merge); }

}  // namespace viewer
