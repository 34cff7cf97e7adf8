// EUC-JP to Shift-JIS: known characters, every JIS X 0208 code against the system's
// converter where there is one, broken input, and the conversion of a whole board.
#include <gtest/gtest.h>

#include <string>

#include "CPdb.h"
#include "CharSetConvert.h"

#if __has_include(<iconv.h>)
#include <iconv.h>
#define KPCB_HAVE_ICONV 1
#endif

namespace {

std::string Sjis(const std::string& euc) { return ConvertEucJpToShiftJis(CString(euc)).str(); }

TEST(EucJpToShiftJis, KnownCharacters) {
    // Single codes are compared with the system's converter below, where there is one.
    EXPECT_EQ("\x95\x5C", Sjis("\xC9\xBD"));  // a kanji whose trail byte is '\'
    EXPECT_EQ("R1-\x8D\x87\x90\xAC", Sjis("R1-\xB9\xE7\xC0\xAE"));  // mixed with ASCII
    EXPECT_EQ("", Sjis(""));
}

TEST(EucJpToShiftJis, BrokenInputBecomesMarks) {
    EXPECT_EQ("\x81\xAC" "a", Sjis("\x8F\xB0\xA1" "a"));  // JIS X 0212: the geta mark
    EXPECT_EQ("?", Sjis("\xA4"));                       // lead byte at the end
    EXPECT_EQ("?a", Sjis("\xA4" "a"));
    EXPECT_EQ("?\xE0\xA0", Sjis("\x8E\xE0\xA2"));       // 0x8E before a non-kana byte
    EXPECT_EQ("??", Sjis("\x80\xFF"));
    EXPECT_EQ("?\xB1", Sjis("\x8F\x8E\xB1"));
}

#ifdef KPCB_HAVE_ICONV
TEST(EucJpToShiftJis, AgreesWithTheSystemConverterOnEveryCode) {
    iconv_t cd = iconv_open("SHIFT_JIS", "EUC-JP");
    if (cd == reinterpret_cast<iconv_t>(-1)) GTEST_SKIP() << "no EUC-JP converter on this system";
    int compared = 0;
    const auto compare = [&](const std::string& euc) {
        char out[8];
        char* in = const_cast<char*>(euc.data());
        size_t inLeft = euc.size(), outLeft = sizeof out;
        char* outPtr = out;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        if (iconv(cd, &in, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1)) return;  // unassigned
        ++compared;
        EXPECT_EQ(std::string(out, outPtr), Sjis(euc)) << std::hex << (unsigned char)euc[0] << " "
                                                       << (unsigned char)euc[1];
    };
    for (int j1 = 0xA1; j1 <= 0xFE; ++j1) {
        for (int j2 = 0xA1; j2 <= 0xFE; ++j2) compare(std::string{static_cast<char>(j1), static_cast<char>(j2)});
    }
    for (int k = 0xA1; k <= 0xDF; ++k) compare(std::string{'\x8E', static_cast<char>(k)});
    iconv_close(cd);
    EXPECT_GT(compared, 6000);
}
#endif

TEST(CharSetConvertor, ConvertsEveryTextAndTheLookupsFollow) {
    const std::string eucNet = "\xC5\xC5\xB8\xBB";  // "denGen" (power supply)
    const std::string sjisNet = Sjis(eucNet);
    ASSERT_NE(eucNet, sjisNet);
    CPdb pdb;
    pdb.SetBoardName(CString("\xB4\xF0\xC8\xC4"));
    pdb.GetLayerManager().AddLayer(CString("\xC9\xBD"), CString("\xCE\xA2"), LayerKind::Copper);
    CPPart* part = pdb.AddPart(CString("\xC9\xCA"), CString("\xBE\xAE"));
    CPComp* comp = pdb.AddComp(CString("\xC9\xCA" "1"), part, CompSide::Top, CPointD(), 0);
    CPRefPin* pin = comp->AddPin(CString("\xA3\xB1"), CPointD(), PadShape::Round, 1, 1, 0, 0);
    pdb.AddNet(CString(eucNet))->AddPin(pin);
    pdb.AddText(0, CString("\x8E\xB1" "ABC"), CPointD(), 1, 0);

    CPdb untouched;
    untouched.AddNet(CString(eucNet));
    untouched.CharSetConvertor(0);
    EXPECT_TRUE(untouched.FindNet(CString(eucNet)));

    pdb.CharSetConvertor(1);
    EXPECT_EQ(Sjis("\xB4\xF0\xC8\xC4"), pdb.GetBoardName().str());
    EXPECT_EQ("\x95\x5C", pdb.GetLayerManager().GetLayer(0)->GetName().str());
    EXPECT_TRUE(pdb.GetLayerManager().FindLayer(CString("\x95\x5C")));
    EXPECT_FALSE(pdb.GetLayerManager().FindLayer(CString("\xC9\xBD")));
    EXPECT_TRUE(pdb.GetLayerManager().FindLayerByEcadName(CString(Sjis("\xCE\xA2"))));
    EXPECT_EQ(part, pdb.FindPart(CString(Sjis("\xC9\xCA"))));
    EXPECT_EQ(Sjis("\xBE\xAE"), part->GetPackage().str());
    EXPECT_EQ(comp, pdb.FindComp(CString(Sjis("\xC9\xCA" "1"))));
    EXPECT_EQ(nullptr, pdb.FindComp(CString("\xC9\xCA" "1")));
    EXPECT_EQ(Sjis("\xA3\xB1"), pin->GetName().str());
    EXPECT_EQ(pin->GetNet(), pdb.FindNet(CString(sjisNet)));
    EXPECT_EQ(nullptr, pdb.FindNet(CString(eucNet)));
    EXPECT_EQ("\xB1" "ABC", pdb.GetText(0)->GetText().str());
}

}  // namespace
