// The board's objects, their links and lookups. (Which layers a pad is on, and the
// layer stack's sides, are seen through the viewer's merge and pictures.)
#include <gtest/gtest.h>

#include "BoardTestSupport.h"
#include "CPdb.h"

namespace {

TEST(BoardModel, LookupsFindWhatWasAddedAndRefuseRepeats) {
    CPdb pdb;
    CPPart* part = pdb.AddPart("R0603", "0603");
    ASSERT_TRUE(part);
    EXPECT_EQ(nullptr, pdb.AddPart("R0603", "other"));
    CPComp* r1 = pdb.AddComp("R1", part, CompSide::Top, CPointD(1, 2), 90);
    ASSERT_TRUE(r1);
    EXPECT_EQ(nullptr, pdb.AddComp("R1", nullptr, CompSide::Top, CPointD(), 0));
    EXPECT_EQ(nullptr, pdb.AddComp("", part, CompSide::Top, CPointD(), 0));
    EXPECT_TRUE(pdb.AddNet("GND"));
    EXPECT_EQ(nullptr, pdb.AddNet("GND"));
    EXPECT_EQ(nullptr, pdb.AddNet(""));
    EXPECT_EQ(nullptr, pdb.GetLayerManager().AddLayer("", "x", LayerKind::Other));
    pdb.GetLayerManager().AddLayer("T", "t", LayerKind::Copper);
    EXPECT_EQ(nullptr, pdb.FindComp("r1"));  // names are case-sensitive
    EXPECT_EQ(nullptr, pdb.GetLayerManager().FindLayerByEcadName("T"));
    EXPECT_EQ(r1, pdb.FindComp("R1"));
    EXPECT_EQ(r1, part->GetComps().GetAt(0));
}

TEST(BoardModel, APinBelongsToOneNetAtMost) {
    CPdb pdb;
    CPComp* comp = pdb.AddComp("U1", nullptr, CompSide::Top, CPointD(), 0);
    CPRefPin* pin = comp->AddPin("1", CPointD(), PadShape::Round, 1, 1, 0, 0);
    CPNet* a = pdb.AddNet("A");
    CPNet* b = pdb.AddNet("B");
    a->AddPin(pin);
    a->AddPin(pin);
    EXPECT_EQ(1, a->GetPinCount());
    b->AddPin(pin);
    EXPECT_EQ(0, a->GetPinCount());
    EXPECT_EQ(b, pin->GetNet());
    EXPECT_FALSE(a->RemovePin(pin));
    EXPECT_TRUE(b->RemovePin(pin));
    EXPECT_EQ(nullptr, pin->GetNet());
    EXPECT_EQ(0, b->GetPinCount());
}

TEST(BoardModel, GeometryOfPadsAreasAndTheBoard) {
    std::unique_ptr<CPdb> pdb = board_test::SmallBoard();
    ASSERT_TRUE(pdb);
    // R2 is turned a quarter: its 0.9 x 0.95 oblong pad stands 0.95 wide.
    const CRectD pad = pdb->FindPin("R2", "1")->GetPadRect();
    EXPECT_NEAR(0.95, pad.Width(), 1e-9);
    EXPECT_NEAR(0.9, pad.Height(), 1e-9);
    EXPECT_NEAR(4.2, pad.Center().y, 1e-9);

    const CPArea* area = pdb->GetArea(0);
    EXPECT_TRUE(area->ContainsPoint(CPointD(10, 5)));
    EXPECT_FALSE(area->ContainsPoint(CPointD(2.9, 2.1)));  // in the hole
    EXPECT_FALSE(area->ContainsPoint(CPointD(19.5, 5)));   // outside
    EXPECT_EQ(area, pdb->FindNet("GND")->GetAreas().GetAt(0));

    EXPECT_EQ(CRectD(0, 0, 20, 10), pdb->GetBoundingRect());
    pdb->GetOutline().RemoveAll();  // without an outline: everything drawn
    EXPECT_EQ(CRectD(1, 1, 19, 9), pdb->GetBoundingRect());
}

TEST(BoardModel, ValidateRefusesLayerIndexesOutsideTheStack) {
    std::unique_ptr<CPdb> pdb = board_test::SmallBoard();
    ASSERT_TRUE(pdb);
    CString problem;
    EXPECT_TRUE(pdb->Validate(problem)) << problem.GetString();
    pdb->FindNet("N1")->GetRoute().AddSegment(4, 0.1, C2PointD());
    EXPECT_FALSE(pdb->Validate(problem));
    EXPECT_NE(-1, problem.Find("N1"));

    std::unique_ptr<CPdb> upward = board_test::SmallBoard();
    upward->FindNet("N1")->GetRoute().AddVia(CPointD(), 0.6, 0.3, 2, 1);
    EXPECT_FALSE(upward->Validate(problem));

    std::unique_ptr<CPdb> text = board_test::SmallBoard();
    text->AddText(-1, "x", CPointD(), 1, 0);
    EXPECT_FALSE(text->Validate(problem));
}

}  // namespace
