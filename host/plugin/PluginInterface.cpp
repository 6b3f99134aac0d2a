#include "PluginInterface.h"

namespace Plugin {

PluginInterface::~PluginInterface() = default;

Base::Type PluginInterface::getClassTypeId()
{
    static const Base::Type type =
        Base::Type::createType(Base::BaseClass::getClassTypeId(), "Plugin::PluginInterface");
    return type;
}

Base::Type PluginInterface::getTypeId() const
{
    return getClassTypeId();
}

} // namespace Plugin
