// Root of the serialisable compat classes.
#pragma once

class CArchive;

class CObject {
public:
    virtual const char* GetRuntimeClassName() const { return "CObject"; }
    virtual ~CObject() = default;
    virtual void Serialize(CArchive&) {}
    virtual void AssertValid() const {}

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};
