// Value arrays shared by records and out-arguments: 32-bit integers and doubles,
// serialised as a count and the raw values.
#pragma once

#include "CArray.h"

class CArrayN : public CArray<int, int> {
public:
    CArrayN() = default;
    CArrayN(std::initializer_list<int> values) { for (int v : values) Add(v); }
    const char* GetRuntimeClassName() const override { return "CArrayN"; }
};
