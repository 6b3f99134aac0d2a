#include "BaseClass.h"

namespace Base {

BaseClass::~BaseClass() = default;

Type BaseClass::getClassTypeId()
{
    static const Type type = Type::createType(Type::badType(), "Base::BaseClass");
    return type;
}

Type BaseClass::getTypeId() const
{
    return getClassTypeId();
}

const char* BaseClass::getTypeName() const
{
    return getTypeId().getName();
}

} // namespace Base
