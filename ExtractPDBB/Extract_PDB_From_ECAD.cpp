#include "Extract_PDB_From_ECAD.h"

#include <memory>
#include <mutex>

#include "CKP_UIS__Main.h"
#include "CPdb.h"
#include "CPdbbProcessor.h"
#include "CUniversalLogger.h"
#include "ExchangeExtraction.h"
#include "GCUtility.h"
#include "ImporterManagers.h"
#include "KPCBAPIExtract.h"
#include "platform.h"

namespace extract_pdb {
namespace {

// Argument i, or an empty string past the end: the letter switches that add nothing
// move the later arguments forward, so a driver may look one place too far.
CString Arg(const CEP_Parameter& param, int index) {
    return index >= 0 && index < param.GetParameters().GetSize() ? param.GetAt(index) : CString();
}

// Positions 2 and 3 hold paths; the walks for switches inside arguments skip them
// (see CEP_Parameter.cpp).
bool IsPathPosition(int index) { return index == 2 || index == 3; }

CString AfterFirstColon(const CString& text) { return text.Mid(text.Find(':') + 1); }

CString WithoutQuotes(CString text) {
    text.Remove('"');
    return text;
}

CString Join(const CString& folder, const CString& name) {
    return GCUtility::GetInstance().GCPathCombine(folder, name, __FILE__, __LINE__);
}

// The board, its EUC-JP texts turned into Shift-JIS when the settings of its format
// ask for it. The settings are read again: the importer may have changed them.
CPdb* WithShiftJisWhenAsked(CPdb* pdb, CKP_UIS_ECAD_Format* (*format)(CKP_UIS_ECAD&)) {
    if (!pdb) return pdb;
    CKP_UIS__Main settings;
    settings.LoadFromDefaultFile();
    if (format(*settings.GetECAD())->GetConvertEucJPtoShiftJIS() == 1) pdb->CharSetConvertor(1);
    return pdb;
}

}  // namespace

CString OutputPathFromSaveName(const CEP_Parameter& param) { return Join(Arg(param, 3), Arg(param, 4) + ".pdbb"); }

CPdb* ExtractFromAllegro(const CEP_Parameter& param, CString& outputPath) {
    CALGMgr manager;
    CPALGUIS uis;
    CKP_UIS__Main settings;
    settings.LoadFromDefaultFile();
    uis.SetAllegro(*settings.GetECAD()->GetAllegro());
    CPALGParamForPDB request;
    request.SetExtractPDBMode(1);

    const CString basePath = Join(Arg(param, 2), Arg(param, 5));
    const char kind = Arg(param, 4).GetAt(1);
    if (kind == 'A' || kind == 'a') {
        request.SetSeparateFiles(1);
        request.SetBrdFilePath(basePath + ".brd");
        request.SetPadFilePath(basePath + ".pad");
        request.SetRteFilePath(basePath + ".rte");
        request.SetSymFilePath(basePath + ".sym");
    } else if (kind == 'B' || kind == 'b') {
        request.SetSeparateFiles(0);
        request.SetExtraString1(Arg(param, 6));
        request.SetExtraString2(Arg(param, 7));
        request.SetBrdFilePath(basePath + ".brd");
    }

    CPdb* pdb = manager.pReadAllegro(&uis, &request);
    outputPath = Join(Arg(param, 3), Arg(param, 5) + ".pdbb");
    return WithShiftJisWhenAsked(pdb, [](CKP_UIS_ECAD& ecad) -> CKP_UIS_ECAD_Format* { return ecad.GetAllegro(); });
}

CPdb* ExtractFromBoardDesigner(const CEP_Parameter& param, CString& outputPath) {
    CBDmanager manager;
    CPBDParamForPDB request;
    request.SetExtractPDBB(1);

    const char first = Arg(param, 4).GetAt(1);
    if (first == 'B') request.SetFirstMode(0);
    const char second = Arg(param, 5).GetAt(1);
    if (second == 'S' || second == 's')
        request.SetSecondMode(1);
    else if (second == 'A' || second == 'a')
        request.SetSecondMode(0);

    if (!request.SetDesignFilePathForExtractPDBB(Arg(param, 2))) return nullptr;

    // Values keep the case they were given in; only the tests ignore it.
    const int count = param.GetCount();
    for (int i = 0; i < count; ++i) {
        if (IsPathPosition(i)) continue;
        CString given = Arg(param, i);
        given.Trim();
        CString upper(given);
        upper.MakeUpper();
        if (upper.IsEmpty()) continue;
        if (upper.Find("/VD:") >= 0) {
            request.SetVDPath(WithoutQuotes(AfterFirstColon(given)));
        } else if (upper.Left(4) == "/UH:" || upper.Left(4) == "/uh:") {
            request.SetUHPath(WithoutQuotes(given.Mid(4)));
        } else if (upper.Find("/ZUKENROOT") >= 0) {
            if (first == 'B') request.SetZukenRoot(AfterFirstColon(given));
        }
    }
    for (int i = 0; i < count; ++i) {
        CString upper = Arg(param, i);
        upper.Trim();
        upper.MakeUpper();
        if (upper == "/UH_POLYGON") request.SetUHPolygon(1);
    }

    request.SetArgument6(Arg(param, 6));
    if (request.GetSecondMode() == 0) {
        request.SetArgument7(Arg(param, 7));
        for (int i = 0; i < count; ++i) {
            CString text = Arg(param, i);
            text.Trim();
            if (text == "/1") request.SetOptionOne(1);
        }
    }

    CPdb* pdb = manager.ReadBoardDesigner(&request);
    outputPath = Join(Arg(param, 3), request.GetPdbbSaveFileNameForExtractPDBB());
    return WithShiftJisWhenAsked(pdb, [](CKP_UIS_ECAD& ecad) -> CKP_UIS_ECAD_Format* { return ecad.GetCR5000BD(); });
}

CPdb* ExtractFromMentor(const CEP_Parameter& param, CString& outputPath) {
    CMentorManager manager;
    CPMentorParamForPDB request;
    request.SetExtractPDBB(1);
    request.SetDesignFolder(Arg(param, 2));

    const int count = param.GetCount();
    int mode = 0;
    if (count >= 6) {
        CString text = Arg(param, 5);
        text.MakeUpper();
        if (text == "/A")
            mode = 1;
        else if (text == "/AF")
            mode = 2;
    }

    for (int i = 0; i < count; ++i) {
        if (IsPathPosition(i)) continue;
        CString given = Arg(param, i);
        given.Trim();
        CString upper(given);
        upper.MakeUpper();
        if (upper.Find("/PANEL") >= 0) request.SetPanelName(WithoutQuotes(AfterFirstColon(given)));
        if (upper.Find("/COCTOP") >= 0) request.SetCocTopLayer(WithoutQuotes(AfterFirstColon(given)));
        if (upper.Find("/COCBOTTOM") >= 0) request.SetCocBottomLayer(WithoutQuotes(AfterFirstColon(given)));
        if (upper.Find("/DRAWING") >= 0) request.SetDrawing(1);
        if (upper.Find("/EXCEPTZEROSILK") >= 0) request.SetExceptZeroSilk(1);
        if (upper.Find("/MAKEHATCH") >= 0) request.SetMakeHatch(1);
    }

    CPdb* pdb = manager.ReadMentor(&request, 1, mode);
    outputPath = OutputPathFromSaveName(param);
    return WithShiftJisWhenAsked(pdb, [](CKP_UIS_ECAD& ecad) -> CKP_UIS_ECAD_Format* { return ecad.GetBoardStation(); });
}

CPdb* ExtractFromZuken(const CEP_Parameter& param, CString& outputPath) {
    CZPWSmanager manager;
    CPPWSParamForPDB request;
    CPPWSUis uis;
    CKP_UIS__Main settings;
    settings.LoadFromDefaultFile();
    uis.SetAppPWSUIS(*settings.GetECAD()->GetCR5000PWS());
    request.SetExtractPDBB(1);

    int mode = 0;
    const char letter = Arg(param, 4).GetAt(1);
    if (letter == 'A' || letter == 'a')
        mode = 0;
    else if (letter == 'W' || letter == 'w')
        mode = 1;

    request.SetDesignPath(Arg(param, 2));
    if (param.GetCount() == 6) request.SetZlsFilePath(Arg(param, 5));

    CPdb* pdb = manager.GetPDB(&request, &uis, 1, mode);
    outputPath =
        Join(Arg(param, 3), GCUtility::GetInstance().GetSegmntFromFilePath(Arg(param, 2), 2) + ".pdbb");

    if (pdb && settings.GetECAD()->GetCR5000PWS()->GetConvertEucJPtoShiftJIS() == 1) pdb->CharSetConvertor(1);
    return pdb;
}

}  // namespace extract_pdb

// ---- The exported functions ---------------------------------------------------

namespace {

using Driver = CPdb* (*)(const CEP_Parameter&, CString& outputPath);

// The driver of each format that has an importer, by the long code of its row in the
// code table; a checked list whose row is not here reads nothing.
struct FormatDriver {
    const char* code;
    Driver driver;
};
const FormatDriver kFormatDrivers[] = {
    {"A", &extract_pdb::ExtractFromAllegro},      {"ZDF", &extract_pdb::ExtractFromBoardDesigner},
    {"MB", &extract_pdb::ExtractFromMentor},      {"ZPS", &extract_pdb::ExtractFromZuken},
    {"ODB", &extract_pdb::ExtractFromOdb},        {"IPC", &extract_pdb::ExtractFromIpc2581},
};

// The driver for the format the checked list names; null (logged) when it has none.
CPdb* DriverByFormatKey(const CEP_Parameter& param, CString& outputPath) {
    const CString code = param.GetFormatCode();
    for (const FormatDriver& entry : kFormatDrivers)
        if (code == entry.code) return entry.driver(param, outputPath);
    GetUniversalLogger().LogLine("No importer for the format key : %s", param.GetFormatKey().GetString());
    return nullptr;
}

// One extraction at a time: the log is process-wide, and so are the importers' settings.
std::mutex g_extractionLock;

// Checks the argument list, runs the driver and saves what it read: 0, 2, 3 or 4.
// Nothing thrown leaves this function.
int RunExtraction(const CStringArray& arguments, Driver driver) {
    std::unique_ptr<CEP_Parameter> param;
    try {
        param = std::make_unique<CEP_Parameter>(arguments);
        if (!param->CheckParameter()) return 2;
    } catch (const std::exception& error) {
        // Only a list that contradicts itself gets here (such as one with /DET_VIA).
        GetUniversalLogger().LogLine("Invalid parameter list : %s", error.what());
        return 2;
    }

    std::unique_ptr<CPdb> pdb;
    CString outputPath;
    try {
        pdb.reset(driver(*param, outputPath));
    } catch (...) {
        return 3;
    }
    if (!pdb) return 3;

    int saved = 0;
    try {
        CPdbbProcessor processor;
        saved = processor.SavePDB(outputPath, pdb.get(), 1, 0, 1);
    } catch (...) {
        saved = 0;
    }
    pdb.reset();
    return saved ? 0 : 4;
}

// Opens the API log, lets build fill the argument list and runs the extraction.
template <class Build>
int Extract(Build&& build, Driver driver) noexcept {
    try {
        std::lock_guard<std::mutex> hold(g_extractionLock);
        GCUtility& util = GCUtility::GetInstance();
        GetUniversalLogger().Init(util.GCPathCombine(util.GetDataPath(), "\\Log\\KAPI.log", __FILE__, __LINE__), 1);
        CStringArray args;
        args.Add("From_KAPI");
        build(args, util);
        return RunExtraction(args, driver);
    } catch (...) {
        return 2;
    }
}

}  // namespace

int ExtractPdbbFromArgumentList(int count, const char* const* arguments) {
    return Extract(
        [&](CStringArray& args, GCUtility&) {
            args.RemoveAll();  // the caller's list brings its own tag
            for (int i = 0; i < count && arguments; ++i)
                args.Add(CString(platform::Utf8ToAnsi(arguments[i] ? arguments[i] : "")));
        },
        &DriverByFormatKey);
}

int ExtractPdbbFromAllegro(const CString& saveFolder, const CString& designFilePath, const char& kind,
                           const CString& extra1, const CString& extra2) {
    return Extract(
        [&](CStringArray& args, GCUtility& util) {
            args.Add("/A");
            args.Add(util.GetSegmntFromFilePath(designFilePath, 1));
            args.Add(saveFolder);
            if (kind == 'a' || kind == 'A') args.Add("/A");
            if (kind == 'b' || kind == 'B') args.Add("/B");
            args.Add(util.GetSegmntFromFilePath(designFilePath, 3));
            args.Add(extra1);
            args.Add(extra2);
        },
        &extract_pdb::ExtractFromAllegro);
}

int ExtractPdbbFromBoardDesigner(const CString& saveFolder, const CString& designPath, const char& firstLetter,
                                 const char& secondLetter, const CString& option1, const CString& option2,
                                 const CString& option3, const CString& option4) {
    return Extract(
        [&](CStringArray& args, GCUtility&) {
            args.Add("/B");
            args.Add(designPath);
            args.Add(saveFolder);
            if (firstLetter == 'a' || firstLetter == 'A') args.Add("/A");
            if (firstLetter == 'b' || firstLetter == 'B') args.Add("/B");
            // An uppercase 'S' adds nothing, as it always has.
            if (secondLetter == 's') args.Add("/S");
            if (secondLetter == 'a' || secondLetter == 'A') args.Add("/A");
            args.Add(option1);
            args.Add(option2);
            args.Add(option3);
            args.Add(option4);
        },
        &extract_pdb::ExtractFromBoardDesigner);
}

int ExtractPdbbFromMentor(const CString& outputFilePath, const CString& designFolder, const int& flag,
                          const CString& /*unused*/) {
    return Extract(
        [&](CStringArray& args, GCUtility& util) {
            args.Add("/M");
            args.Add(designFolder);
            args.Add(util.GetSegmntFromFilePath(outputFilePath, 1));
            args.Add(util.GetSegmntFromFilePath(outputFilePath, 2));
            if (flag) args.Add("/A");
        },
        &extract_pdb::ExtractFromMentor);
}

int ExtractPdbbFromZuken(const CString& outputFilePath, const CString& designPath, const char& letter,
                         const CString& zlsFilePath) {
    return Extract(
        [&](CStringArray& args, GCUtility& util) {
            args.Add("/Z");
            args.Add(designPath);
            args.Add(util.GetSegmntFromFilePath(outputFilePath, 1));
            CString letterSwitch;
            letterSwitch.Format("/%c", letter);
            args.Add(letterSwitch);
            // The existence test sees the path as the checks will, separators normalised.
            CString zls(zlsFilePath);
            util.NormalizeSeparators(zls);
            if (util.DoesFileOrDirExist(zls, __FILE__, __LINE__)) args.Add(zlsFilePath);
        },
        &extract_pdb::ExtractFromZuken);
}
