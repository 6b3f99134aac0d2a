#pragma once

#include "KorvPluginExport.h"
#include "Type.h"

namespace Base {

// Root of the host's run-time typed classes.
class KORVPLUGIN_EXPORT BaseClass
{
public:
    BaseClass() = default;
    BaseClass(const BaseClass&) = default;
    BaseClass& operator=(const BaseClass&) = default;

    virtual Type getTypeId() const;
    virtual ~BaseClass();
    virtual const char* getTypeName() const;

    static Type getClassTypeId();
    bool isDerivedFrom(const Type& type) const { return getTypeId().isDerivedFrom(type); }
};

} // namespace Base
