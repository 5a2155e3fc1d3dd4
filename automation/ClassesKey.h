// The part of the registry that makes classes known, of one user or of the whole machine. Windows alone.
#pragma once

#include <string>
#include <string_view>

#include <windows.h>

namespace zul {

enum class RegistryScope
{
    User,   // HKEY_CURRENT_USER\Software\Classes: needs no administrator
    Machine // HKEY_LOCAL_MACHINE\Software\Classes
};

// Keys below Software\Classes, "CLSID\{…}\ProgID", or that key itself, "". What a change meets first ends it: later
// calls do nothing, and result() tells.
class ClassesKey
{
public:
    explicit ClassesKey(RegistryScope scope) noexcept
        : m_root(scope == RegistryScope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE)
    {}

    // Makes the key where it is missing. An empty name is the key's default value.
    void set(const std::wstring& key, const std::wstring& name, const std::wstring& value);
    // With all below it; nothing to do where there is none.
    void removeTree(const std::wstring& key);
    // The key, if it holds no key and no value but a default one.
    void removeIfEmpty(const std::wstring& key);
    // Empty where there is none.
    [[nodiscard]] std::wstring read(const std::wstring& key, const std::wstring& name = {}) const;

    // Whether the hosts of the other width, 32 bits beside 64, have such a key. They see names and type libraries as ours
    // do, but classes and interfaces of their own; a system of one width answers for that one.
    [[nodiscard]] bool otherWidthHas(const std::wstring& key) const;

    [[nodiscard]] HRESULT result() const noexcept { return m_result; }

private:
    void note(LSTATUS status) noexcept;

    HKEY m_root;
    HRESULT m_result = S_OK;
};

// "{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}"
std::wstring guidText(const GUID& guid);

} // namespace zul
