// Helpers shared by the board tests.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "CPdb.h"
#include "PdbText.h"

namespace board_test {

inline std::string SamplePath() { return std::string(KPCB_SAMPLES_DIR) + "/demo_board.pdbba"; }

inline std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

inline std::unique_ptr<CPdb> ReadOrFail(const std::string& text) {
    CString error;
    std::unique_ptr<CPdb> pdb = CPdbText::Read(CString(text), error);
    EXPECT_TRUE(pdb) << error.GetString();
    return pdb;
}

// A small board that uses every kind of object: two layers of copper between silk,
// a part, two components (one on each side), a net with a segment and a via, an
// area with a hole and a text.
inline std::unique_ptr<CPdb> SmallBoard() {
    return ReadOrFail(
        "PDBBA 1\n"
        "BOARD small\n"
        "OUTLINE 4 0 0 20 0 20 10 0 10\n"
        "LAYER ST st SILK\n"
        "LAYER T t COPPER\n"
        "LAYER B b COPPER\n"
        "LAYER SB sb SILK\n"
        "PART R0603 0603\n"
        "NET N1\n"
        "NET GND\n"
        "COMP R1 R0603 TOP 5 5 0\n"
        "PIN 1 4.2 5 RECT 0.9 0.95 0 0 N1\n"
        "PIN 2 5.8 5 RECT 0.9 0.95 0 0 GND\n"
        "COMP R2 R0603 BOTTOM 15 5 90\n"
        "PIN 1 15 4.2 OBLONG 0.9 0.95 90 0 N1\n"
        "PIN 2 15 5.8 ROUND 0.9 0.9 90 0.4 \"\"\n"
        "SEG N1 T 0.25 4.2 5 10 5\n"
        "VIA N1 10 5 0.6 0.3 T B\n"
        "SEG N1 B 0.25 10 5 15 4.2\n"
        "AREA GND B 4 1 1 19 1 19 9 1 9\n"
        "HOLE 3 2 2 3 2 3 3\n"
        "TEXT ST 4 7 1 0 R1\n"
        "END\n");
}

// SmallBoard with one of each object that version 1 of the file forms cannot hold:
// paste, drill and document layers, a mirrored component, polygon pads (a chamfered
// square and a donut of two contours), a clockwise and a counter-clockwise arc.
inline std::unique_ptr<CPdb> BoardWithEveryKind() {
    std::unique_ptr<CPdb> pdb = SmallBoard();
    CPDBLayerManager& layers = pdb->GetLayerManager();
    layers.AddLayer("PASTE_B", "pb", LayerKind::Paste);
    layers.AddLayer("DRILL", "d", LayerKind::Drill);
    layers.AddLayer("ASSY", "a", LayerKind::Document);
    CPComp* comp = pdb->AddComp("J1", pdb->FindPart("R0603"), CompSide::Bottom, CPointD(8, 2), 270);
    comp->SetMirrored(true);
    CPRefPin* square = comp->AddPin("1", CPointD(7.5, 2), PadShape::Polygon, 0, 0, 0, 0.3);
    square->SetPadOutline({CArrayPointD{{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.25}, {0.25, 0.5}, {-0.5, 0.5}}});
    CPRefPin* donut = comp->AddPin("2", CPointD(8.5, 2), PadShape::Polygon, 0, 0, 0, 0);
    donut->SetPadOutline({CArrayPointD{{-0.4, -0.4}, {0.4, -0.4}, {0.4, 0.4}, {-0.4, 0.4}},
                          CArrayPointD{{-0.1, -0.1}, {0.1, -0.1}, {0.1, 0.1}, {-0.1, 0.1}}});
    pdb->FindNet("GND")->AddPin(donut);
    CPRouteNet& route = pdb->FindNet("N1")->GetRoute();
    route.AddArc(1, 0.2, C2PointD(CPointD(10, 5), CPointD(11, 6)), CPointD(11, 5), true);
    route.AddArc(2, 0.3, C2PointD(CPointD(12, 3), CPointD(12, 3)), CPointD(12.5, 3), false);
    return pdb;
}

}  // namespace board_test
