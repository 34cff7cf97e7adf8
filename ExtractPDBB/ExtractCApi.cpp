// The extraction functions for callers without C++: wide strings in (null is an
// empty string), the same results out.
#include "KPCBAPIExtract.h"
#include "KapiFrame.h"

namespace {
template <class Body>
int Extraction(Body&& body) {
    try {
        return body();
    } catch (...) {
        return 2;  // nothing was extracted
    }
}
}  // namespace

extern "C" {

int KPCB_ExtractPdbbFromAllegro(const wchar_t* saveFolder, const wchar_t* design, char kind, const wchar_t* extra1,
                                const wchar_t* extra2) {
    return Extraction([&] {
        return ExtractPdbbFromAllegro(kapi::WideToCString(saveFolder), kapi::WideToCString(design), kind,
                                      kapi::WideToCString(extra1), kapi::WideToCString(extra2));
    });
}

int KPCB_ExtractPdbbFromBoardDesigner(const wchar_t* saveFolder, const wchar_t* design, char firstLetter,
                                      char secondLetter, const wchar_t* option1, const wchar_t* option2,
                                      const wchar_t* option3, const wchar_t* option4) {
    return Extraction([&] {
        return ExtractPdbbFromBoardDesigner(kapi::WideToCString(saveFolder), kapi::WideToCString(design), firstLetter,
                                            secondLetter, kapi::WideToCString(option1), kapi::WideToCString(option2),
                                            kapi::WideToCString(option3), kapi::WideToCString(option4));
    });
}

int KPCB_ExtractPdbbFromMentor(const wchar_t* outputFile, const wchar_t* designFolder, int flag, const wchar_t* unused) {
    return Extraction([&] {
        return ExtractPdbbFromMentor(kapi::WideToCString(outputFile), kapi::WideToCString(designFolder), flag,
                                     kapi::WideToCString(unused));
    });
}

int KPCB_ExtractPdbbFromZuken(const wchar_t* outputFile, const wchar_t* design, char letter, const wchar_t* zlsFile) {
    return Extraction([&] {
        return ExtractPdbbFromZuken(kapi::WideToCString(outputFile), kapi::WideToCString(design), letter,
                                    kapi::WideToCString(zlsFile));
    });
}

}  // extern "C"
