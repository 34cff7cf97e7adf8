// Array of 64-bit floating-point values, serialised as a count and the raw values.
#pragma once

#include "CArray.h"

class CArrayD : public CArray<double, double> {
public:
    CArrayD() = default;
    CArrayD(std::initializer_list<double> values) { for (double v : values) Add(v); }
    const char* GetRuntimeClassName() const override { return "CArrayD"; }
};
