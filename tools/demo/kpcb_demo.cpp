// A tour of KPCBAPI: launches the reference viewer on the demo board, drives it,
// asks it questions, merges a net's copper, captures pictures and closes it.
// Every answer is printed as it comes back, whatever it is.
//
//   kpcb_demo [BOARD [OUTPUT_FOLDER]]
//
// BOARD defaults to samples/demo_board.pdbba of the source tree, OUTPUT_FOLDER to
// demo-output beside this program.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "KPCBAPI.h"
#include "platform.h"

namespace {

void Line(const std::string& call, const std::string& answer) {
    std::printf("  %-58s %s\n", call.c_str(), answer.c_str());
}

// A call whose only answer is its status code.
int Step(const std::string& call, int status) {
    Line(call, std::to_string(status) + " (" + KPCB_GetStatusText(status) + ")");
    return status;
}

// A query: the values when it succeeded, else its status code. (The values are
// read after the call has returned: the caller calls first, then passes them.)
void Query(const std::string& call, int status, const std::string& values) {
    if (status == KPCB_OK) {
        Line(call, values);
    } else {
        Step(call, status);
    }
}

std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

std::wstring Wide(const std::string& text) { return platform::AnsiToWide(text); }

// A string that the library allocated for a result.
struct LibraryString {
    wchar_t* text = nullptr;
    ~LibraryString() { KPCB_FreeString(text); }
    std::string Narrow() const { return text ? platform::WideToAnsi(text) : std::string(); }
};

// Splits a list that the library joined with delimiter.
std::vector<std::string> Split(const std::string& text, char delimiter) {
    std::vector<std::string> items;
    size_t start = 0;
    while (!text.empty()) {
        const size_t end = text.find(delimiter, start);
        items.push_back(text.substr(start, end - start));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return items;
}

// The points of an outline or a hole, read through the library's own arrays.
std::vector<std::pair<double, double>> ReadPoints(int pid, int cw, int ccw, int* status) {
    CArrayD* xs = KPCB_ArrayD_Create();
    CArrayD* ys = KPCB_ArrayD_Create();
    *status = ccw < 0 ? KPCB_GetCWPolygonPointDataArray(pid, cw, xs, ys)
                      : KPCB_GetCCWPolygonPointDataArray(pid, cw, ccw, xs, ys);
    std::vector<double> x(static_cast<size_t>(KPCB_ArrayD_GetSize(xs)));
    std::vector<double> y(static_cast<size_t>(KPCB_ArrayD_GetSize(ys)));
    if (!x.empty()) x.resize(KPCB_ArrayD_GetData(xs, x.data(), static_cast<int>(x.size())));
    if (!y.empty()) y.resize(KPCB_ArrayD_GetData(ys, y.data(), static_cast<int>(y.size())));
    KPCB_ArrayD_Free(xs);
    KPCB_ArrayD_Free(ys);
    std::vector<std::pair<double, double>> points;
    for (size_t i = 0; i < x.size() && i < y.size(); ++i) points.emplace_back(x[i], y[i]);
    return points;
}

void PrintPoints(const char* indent, const std::vector<std::pair<double, double>>& points) {
    for (size_t i = 0; i < points.size(); ++i) {
        std::printf("%s(%s, %s)", i % 4 == 0 ? indent : "  ", Number(points[i].first).c_str(),
                    Number(points[i].second).c_str());
        if (i % 4 == 3 || i + 1 == points.size()) std::printf("\n");
    }
}

// Merges the net's copper on the layer and prints every outline with its holes.
void MergeAndPrint(int pid, const std::string& net, const std::string& layer) {
    const std::wstring wideLayer = Wide(layer);
    const wchar_t* layers[] = {wideLayer.c_str()};
    Step("KPCB_PolygonMergeCreate", KPCB_PolygonMergeCreate(pid));
    const int run = Step("KPCB_PolygonMergeRun " + net + " on " + layer + ", division 32",
                         KPCB_PolygonMergeRun(pid, layers, 1, Wide(net).c_str(), 32));
    if (run == KPCB_OK) {
        const int outlines = KPCB_GetCWPolygonCount(pid);
        Line("KPCB_GetCWPolygonCount", std::to_string(outlines) + (outlines < 0 ? std::string(" (") + KPCB_GetStatusText(outlines) + ")" : ""));
        for (int cw = 0; cw < outlines; ++cw) {
            int status = KPCB_OK;
            const auto outline = ReadPoints(pid, cw, -1, &status);
            const int holes = KPCB_GetCCWPolygonCount(pid, cw);
            std::printf("    outline %d (clockwise): %zu points, %d hole(s)\n", cw, outline.size(), holes);
            if (status != KPCB_OK) std::printf("      read: %d (%s)\n", status, KPCB_GetStatusText(status));
            PrintPoints("      ", outline);
            for (int ccw = 0; ccw < holes; ++ccw) {
                const auto hole = ReadPoints(pid, cw, ccw, &status);
                std::printf("    hole %d of outline %d (counter-clockwise): %zu points\n", ccw, cw, hole.size());
                if (status != KPCB_OK) std::printf("      read: %d (%s)\n", status, KPCB_GetStatusText(status));
                PrintPoints("      ", hole);
            }
        }
    }
    Step("KPCB_PolygonMergeDestroy", KPCB_PolygonMergeDestroy(pid));
}

// Asks for a picture; the request is one-way, so a read-only question afterwards
// makes sure the viewer has handled it before the file is looked at.
void Capture(int pid, const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    Step("KPCB_ExportBitmap_CurrentImage", KPCB_ExportBitmap_CurrentImage(pid, path.c_str()));
    int callStatus = 0;
    KPCB_GetStatusForCallingRedMark(pid, &callStatus);
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) {
        std::printf("    picture: %s (the viewer wrote no file)\n", path.c_str());
    } else {
        std::printf("    picture: %s (%ju bytes)\n", path.c_str(), static_cast<uintmax_t>(size));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::string board = std::filesystem::absolute(
        argc > 1 ? argv[1] : std::string(KPCB_SOURCE_DIR) + "/samples/demo_board.pdbba").string();
    const std::string output =
        std::filesystem::absolute(argc > 2 ? std::filesystem::path(argv[2])
                                           : std::filesystem::path(platform::ExecutableDirectory()) / "demo-output")
            .string();
    std::error_code error;
    std::filesystem::create_directories(output, error);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);

    std::printf("KPCBAPI demo\n  board:    %s\n  pictures: %s\n\n", board.c_str(), output.c_str());
    // A viewer that stops answering ends a wait with -7 after 20 s rather than never.
    KPCB_SetReplyTimeout(20000);
    std::printf("Launch\n");
    const int pid = KPCB_Launch_HideMode(Wide(board).c_str());
    if (pid <= 0) {
        Step("KPCB_Launch_HideMode", pid);
        std::printf("The viewer did not start; nothing more to show.\n");
        return 1;
    }
    Line("KPCB_Launch_HideMode", "viewer process " + std::to_string(pid));
    Line("KPCB_IsRunning", std::to_string(KPCB_IsRunning(pid)));
    Step("KPCB_SetMainTitle \"KPCBAPI demo\"", KPCB_SetMainTitle(pid, "KPCBAPI demo"));
    Step("KPCB_SetWindowPosition 0 0 1280 960", KPCB_SetWindowPosition(pid, 0, 0, 1280, 960));

    std::printf("\nView\n");
    Step("KPCB_ZoomFitSize", KPCB_ZoomFitSize(pid));
    const double x1 = 30, y1 = 14, x2 = 60, y2 = 40;
    Step("KPCB_ZoomArea (30, 14) - (60, 40): U1 and U3", KPCB_ZoomArea(pid, &x1, &y1, &x2, &y2));
    const double quarter = 90;
    Step("KPCB_RotateBoard 90", KPCB_RotateBoard(pid, &quarter));
    Capture(pid, (std::filesystem::path(output) / "demo_area_rotated.bmp").string());
    const double upright = 0;
    Step("KPCB_RotateBoard 0", KPCB_RotateBoard(pid, &upright));
    Step("KPCB_ZoomFitSize", KPCB_ZoomFitSize(pid));

    std::printf("\nHighlight and layers\n");
    Step("KPCB_Highlight_DependentColor net GND, blue",
         KPCB_Highlight_DependentColor(pid, 0, "GND", ",", 0, 90, 255, 0, 1));
    Step("KPCB_Highlight_RefPin U1 pins 1, 14, orange", KPCB_Highlight_RefPin(pid, "U1", "1,14", ",", 255, 140, 0, 1));
    Step("KPCB_Visible_Layers BOTTOM hidden", KPCB_Visible_Layers(pid, "BOTTOM", ",", 0));

    std::printf("\nQuestions\n");
    int count = 0;
    int status = KPCB_GetPinCountFromReference(pid, L"U1", &count);
    Query("KPCB_GetPinCountFromReference U1", status, std::to_string(count));
    count = 0;
    status = KPCB_GetPinCountFromPart(pid, L"24LC02B-SN", &count);
    Query("KPCB_GetPinCountFromPart 24LC02B-SN", status, std::to_string(count));
    double pitch = 0;
    status = KPCB_GetPinPitch(pid, L"U1", 0, &pitch);
    Query("KPCB_GetPinPitch U1 (unit 0: mm)", status, Number(pitch));
    pitch = 0;
    status = KPCB_GetPinPitch(pid, L"J1", 1, &pitch);
    Query("KPCB_GetPinPitch J1 (unit 1: mil)", status, Number(pitch));
    pitch = 0;
    status = KPCB_GetPinPitchFrom2PinComponent(pid, L"R1", 0, &pitch);
    Query("KPCB_GetPinPitchFrom2PinComponent R1 (mm)", status, Number(pitch));
    int place = 0;
    status = KPCB_GetReferencePlaceStatus(pid, L"U3", &place, 0);
    Query("KPCB_GetReferencePlaceStatus U3", status, std::to_string(place));
    int top = 0, bottom = 0, other = 0;
    status = KPCB_GetReferenceCountForPlace(pid, L"U1,U2,U3,R5,X9", L",", &top, &bottom, &other, 0);
    Query("KPCB_GetReferenceCountForPlace U1,U2,U3,R5,X9", status,
          "top " + std::to_string(top) + ", bottom " + std::to_string(bottom) + ", other " + std::to_string(other));
    LibraryString net, pins;
    status = KPCB_GetPinListInfoOfNet_RefPin(pid, L"U1", L"14", &net.text, &pins.text, L"|");
    Query("KPCB_GetPinListInfoOfNet_RefPin U1 14", status, "net " + net.Narrow());
    if (status == KPCB_OK) {
        const auto list = Split(pins.Narrow(), '|');
        std::printf("    %zu pins:", list.size());
        for (const auto& pin : list) std::printf(" %s", pin.c_str());
        std::printf("\n");
    }

    std::printf("\nCopper merge\n");
    MergeAndPrint(pid, "GND", "GND");

    std::printf("\nPicture of the board\n");
    Capture(pid, (std::filesystem::path(output) / "demo_board.bmp").string());

    std::printf("\nClose\n");
    const int exitStatus = Step("KPCB_Exit (wait)", KPCB_Exit(pid, 1));
    Line("KPCB_IsRunning", std::to_string(KPCB_IsRunning(pid)));
    return exitStatus == KPCB_OK ? 0 : 1;
}
