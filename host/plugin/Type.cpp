#include "Type.h"

#include <cstring>
#include <map>
#include <mutex>
#include <deque>

namespace Base {

namespace {

struct TypeData
{
    std::string name;
    unsigned int parent = 0;
    Type::FactoryMethod factory = nullptr;
};

// Libraries may be loaded from any thread, so the registry is guarded.
struct Registry
{
    std::mutex mutex;
    std::deque<TypeData> types{TypeData{"BadType", 0, nullptr}};
    std::map<std::string, unsigned int> byName{{"BadType", 0}};
};

Registry& registry()
{
    static Registry r;
    return r;
}

} // namespace

Type Type::createType(const Type& parent, const char* name, FactoryMethod method)
{
    if (!name || !*name)
        return Type();
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    const auto found = r.byName.find(name);
    if (found != r.byName.end())
        return Type(found->second);
    const auto key = static_cast<unsigned int>(r.types.size());
    r.types.push_back(TypeData{name, parent.m_key, method});
    r.byName.emplace(name, key);
    return Type(key);
}

Type Type::badType()
{
    return Type();
}

Type Type::fromName(const char* name)
{
    if (!name)
        return Type();
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    const auto found = r.byName.find(name);
    return found == r.byName.end() ? Type() : Type(found->second);
}

Type Type::fromKey(unsigned int key)
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return key < r.types.size() ? Type(key) : Type();
}

int Type::getNumTypes()
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return static_cast<int>(r.types.size());
}

void* Type::createInstanceByName(const char* name)
{
    return fromName(name).createInstance();
}

void* Type::createInstance() const
{
    FactoryMethod factory = nullptr;
    {
        Registry& r = registry();
        std::lock_guard<std::mutex> lock(r.mutex);
        factory = r.types[m_key].factory;
    }
    // The factory runs unlocked: a constructor may itself look types up.
    return factory ? factory() : nullptr;
}

const char* Type::getName() const
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    // A deque never moves its elements, so the pointer stays valid.
    return r.types[m_key].name.c_str();
}

Type Type::getParent() const
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return Type(r.types[m_key].parent);
}

bool Type::isDerivedFrom(const Type& type) const
{
    if (isBad() || type.isBad())
        return false;
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    for (unsigned int key = m_key; key != 0; key = r.types[key].parent) {
        if (key == type.m_key)
            return true;
    }
    return false;
}

} // namespace Base
