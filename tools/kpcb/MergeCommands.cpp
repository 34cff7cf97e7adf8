// Polygon merge: a session in the viewer (create, run, reads, destroy), and `merge`,
// which does all of it and prints every outline with its holes.
#include <array>

#include "KPCBAPI.h"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

struct Run {
    std::string net;
    std::vector<std::string> layers;
    double division = 0;
};

Run& AddRunArguments(Command& c) {
    Run& r = c.Hold<Run>();
    c.parser()->add_option("NET", r.net, "the net whose copper is merged")->required();
    c.parser()->add_option("LAYER", r.layers, "the layers to merge on");
    c.parser()
        ->add_option("--division,-d", r.division, "passed to the viewer as it is (docs/viewer.md; 0: its default)")
        ->capture_default_str();
    return r;
}

int MergeRun(int pid, const Run& r) {
    std::vector<std::wstring> wide;
    for (const auto& layer : r.layers) wide.push_back(Wide(layer));
    std::vector<const wchar_t*> layers;
    for (const auto& layer : wide) layers.push_back(layer.c_str());
    return KPCB_PolygonMergeRun(pid, layers.empty() ? nullptr : layers.data(), static_cast<int>(layers.size()),
                                Wide(r.net).c_str(), r.division);
}

const Meanings kRunMeanings = {{KPCB_ERR_202, "no layer to merge on (or the viewer refused the layers)"},
                               {KPCB_ERR_201, "no net to merge (or the viewer refused the net)"}};

// Coordinates that the library fills into its own arrays.
class Points {
public:
    Points() : m_xs(KPCB_ArrayD_Create()), m_ys(KPCB_ArrayD_Create()) {}
    ~Points() {
        KPCB_ArrayD_Free(m_xs);
        KPCB_ArrayD_Free(m_ys);
    }
    Points(const Points&) = delete;
    Points& operator=(const Points&) = delete;
    CArrayD* xs() { return m_xs; }
    CArrayD* ys() { return m_ys; }
    static std::vector<double> Values(const CArrayD* array) {
        std::vector<double> values(static_cast<size_t>(KPCB_ArrayD_GetSize(array)));
        if (!values.empty()) values.resize(KPCB_ArrayD_GetData(array, values.data(), static_cast<int>(values.size())));
        return values;
    }
    void Print(std::ostream& out) const { PrintPoints(out, Values(m_xs), Values(m_ys)); }

private:
    CArrayD* m_xs;
    CArrayD* m_ys;
};

// Prints every outline of the session and its holes. Gives the first failing status.
int PrintSession(std::ostream& out, int pid) {
    const int outlines = KPCB_GetCWPolygonCount(pid);
    if (outlines < 0) return outlines;
    for (int cw = 0; cw < outlines; ++cw) {
        Points outline;
        int status = KPCB_GetCWPolygonPointDataArray(pid, cw, outline.xs(), outline.ys());
        if (status != KPCB_OK) return status;
        out << "outline " << cw << '\n';
        outline.Print(out);
        const int holes = KPCB_GetCCWPolygonCount(pid, cw);
        if (holes < 0) return holes;
        for (int ccw = 0; ccw < holes; ++ccw) {
            Points hole;
            status = KPCB_GetCCWPolygonPointDataArray(pid, cw, ccw, hole.xs(), hole.ys());
            if (status != KPCB_OK) return status;
            out << "hole " << cw << ' ' << ccw << '\n';
            hole.Print(out);
        }
    }
    return KPCB_OK;
}

// A read that gives a count or a negative status.
void AddCount(Tool& tool, const std::string& name, const std::string& help, int indexes,
              std::function<int(int pid, const std::array<int, 2>&)> call) {
    Command& c = tool.AddForViewer(name, help);
    auto& at = c.Hold<std::array<int, 2>>();
    const char* names[] = {"CW", "CCW"};
    const char* helps[] = {"the outline's index", "the hole's index within the outline"};
    for (int i = 0; i < indexes; ++i) c.parser()->add_option(names[i], at[i], helps[i])->required();
    c.Does([&c, &at, call] {
        const int count = call(c.Pid(), at);
        if (count < 0) return c.Finish(count);
        c.out() << count << '\n';
        return kExitOk;
    });
}

}  // namespace

void AddMergeCommands(Tool& tool) {
    tool.Group("Polygon merge");
    {
        Command& c = tool.AddForViewer("merge-create", "Starts a merge session in the viewer (KPCB_PolygonMergeCreate).");
        c.Does([&c] { return c.Finish(KPCB_PolygonMergeCreate(c.Pid())); });
    }
    {
        Command& c = tool.AddForViewer("merge-run", "Merges the copper of a net on the layers (KPCB_PolygonMergeRun).");
        Run& r = AddRunArguments(c);
        c.Does([&c, &r] { return c.Finish(MergeRun(c.Pid(), r), kRunMeanings); });
    }
    {
        Command& c = tool.AddForViewer("merge-destroy", "Releases the merge result (KPCB_PolygonMergeDestroy).");
        c.Does([&c] { return c.Finish(KPCB_PolygonMergeDestroy(c.Pid())); });
    }
    AddCount(tool, "cw-count", "Prints the number of outlines (KPCB_GetCWPolygonCount).", 0,
             [](int pid, const std::array<int, 2>&) { return KPCB_GetCWPolygonCount(pid); });
    AddCount(tool, "ccw-count", "Prints the number of holes of an outline (KPCB_GetCCWPolygonCount).", 1,
             [](int pid, const std::array<int, 2>& at) { return KPCB_GetCCWPolygonCount(pid, at[0]); });
    AddCount(tool, "cw-point-count", "Prints the number of points of an outline (KPCB_GetCWPolygonPointCount).", 1,
             [](int pid, const std::array<int, 2>& at) { return KPCB_GetCWPolygonPointCount(pid, at[0]); });
    AddCount(tool, "ccw-point-count", "Prints the number of points of a hole (KPCB_GetCCWPolygonPointCount).", 2,
             [](int pid, const std::array<int, 2>& at) { return KPCB_GetCCWPolygonPointCount(pid, at[0], at[1]); });
    {
        Command& c = tool.AddForViewer("cw-point", "Prints one point of an outline as \"x y\" "
                                                   "(KPCB_GetCWPolygonPointData).");
        auto& at = c.Hold<std::array<int, 2>>();
        c.parser()->add_option("CW", at[0], "the outline's index")->required();
        c.parser()->add_option("POINT", at[1], "the point's index")->required();
        c.Does([&c, &at] {
            double x = 0, y = 0;
            const int status = KPCB_GetCWPolygonPointData(c.Pid(), at[0], at[1], &x, &y);
            if (status != KPCB_OK) return c.Finish(status);
            PrintPoints(c.out(), {x}, {y});
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("ccw-point", "Prints one point of a hole as \"x y\" "
                                                    "(KPCB_GetCCWPolygonPointData).");
        auto& at = c.Hold<std::array<int, 3>>();
        c.parser()->add_option("CW", at[0], "the outline's index")->required();
        c.parser()->add_option("CCW", at[1], "the hole's index within the outline")->required();
        c.parser()->add_option("POINT", at[2], "the point's index")->required();
        c.Does([&c, &at] {
            double x = 0, y = 0;
            const int status = KPCB_GetCCWPolygonPointData(c.Pid(), at[0], at[1], at[2], &x, &y);
            if (status != KPCB_OK) return c.Finish(status);
            PrintPoints(c.out(), {x}, {y});
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("cw-points", "Prints every point of an outline, one \"x y\" line each "
                                                    "(KPCB_GetCWPolygonPointDataArray).");
        auto& cw = c.Hold<int>(0);
        c.parser()->add_option("CW", cw, "the outline's index")->required();
        c.Does([&c, &cw] {
            Points points;
            const int status = KPCB_GetCWPolygonPointDataArray(c.Pid(), cw, points.xs(), points.ys());
            if (status != KPCB_OK) return c.Finish(status);
            points.Print(c.out());
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("ccw-points", "Prints every point of a hole, one \"x y\" line each "
                                                     "(KPCB_GetCCWPolygonPointDataArray).");
        auto& at = c.Hold<std::array<int, 2>>();
        c.parser()->add_option("CW", at[0], "the outline's index")->required();
        c.parser()->add_option("CCW", at[1], "the hole's index within the outline")->required();
        c.Does([&c, &at] {
            Points points;
            const int status = KPCB_GetCCWPolygonPointDataArray(c.Pid(), at[0], at[1], points.xs(), points.ys());
            if (status != KPCB_OK) return c.Finish(status);
            points.Print(c.out());
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer(
            "merge", "Creates a session, merges the net's copper, prints each outline (\"outline I\", then its "
                     "\"x y\" points) and each of its holes (\"hole I J\", then its points), and destroys the session.");
        Run& r = AddRunArguments(c);
        c.Does([&c, &r] {
            const int pid = c.Pid();
            int status = KPCB_PolygonMergeCreate(pid);
            if (status != KPCB_OK) return c.Finish(status);
            status = MergeRun(pid, r);
            if (status == KPCB_OK) status = PrintSession(c.out(), pid);
            const int destroyed = KPCB_PolygonMergeDestroy(pid);
            if (status == KPCB_OK) status = destroyed;
            return c.Finish(status, kRunMeanings);
        });
    }
}

}  // namespace kpcb
