#pragma once

#include "KorvPluginExport.h"

#include <string>

namespace Base {

// Run-time type record of the host: a small key into a process-wide registry that
// holds each type's name, parent and factory. Plug-ins register their classes when
// their library is loaded, so the host can create them by name.
class KORVPLUGIN_EXPORT Type
{
public:
    using FactoryMethod = void* (*)();

    Type() = default;
    Type(const Type&) = default;
    Type& operator=(const Type&) = default;

    // Registers a new type. A name that is already registered yields the existing
    // type, so reloading a library does not grow the registry.
    static Type createType(const Type& parent, const char* name, FactoryMethod method = nullptr);
    static Type badType();
    static Type fromName(const char* name);
    static Type fromKey(unsigned int key);
    static int getNumTypes();
    static void* createInstanceByName(const char* name);

    void* createInstance() const;
    const char* getName() const;
    Type getParent() const;
    bool isDerivedFrom(const Type& type) const;
    unsigned int getKey() const { return m_key; }
    bool isBad() const { return m_key == 0; }
    bool isValid() const { return m_key != 0; }

    bool operator==(const Type& other) const { return m_key == other.m_key; }
    bool operator!=(const Type& other) const { return m_key != other.m_key; }
    bool operator<(const Type& other) const { return m_key < other.m_key; }

private:
    explicit Type(unsigned int key) : m_key(key) {}

    unsigned int m_key = 0;
};

} // namespace Base
