#include "automation/ClassesKey.h"

#include <objbase.h>

namespace zul {

namespace {

std::wstring pathOf(const std::wstring& key)
{
    return key.empty() ? L"Software\\Classes" : L"Software\\Classes\\" + key;
}

} // namespace

void ClassesKey::note(LSTATUS status) noexcept
{
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
        m_result = HRESULT_FROM_WIN32(static_cast<DWORD>(status));
    }
}

void ClassesKey::set(const std::wstring& key, const std::wstring& name, const std::wstring& value)
{
    if (FAILED(m_result)) {
        return;
    }
    HKEY opened = nullptr;
    LSTATUS status = RegCreateKeyExW(m_root, pathOf(key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                     KEY_SET_VALUE, nullptr, &opened, nullptr);
    if (status == ERROR_SUCCESS) {
        status = RegSetValueExW(opened, name.empty() ? nullptr : name.c_str(), 0, REG_SZ,
                                reinterpret_cast<const BYTE*>(value.c_str()),
                                static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
        RegCloseKey(opened);
    }
    note(status);
}

void ClassesKey::removeTree(const std::wstring& key)
{
    if (SUCCEEDED(m_result)) {
        note(RegDeleteTreeW(m_root, pathOf(key).c_str()));
    }
}

void ClassesKey::removeIfEmpty(const std::wstring& key)
{
    HKEY opened = nullptr;
    if (FAILED(m_result) ||
        RegOpenKeyExW(m_root, pathOf(key).c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
        return;
    }
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS status = RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                            &values, nullptr, nullptr, nullptr, nullptr);
    const bool hasDefault =
        RegQueryValueExW(opened, nullptr, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
    RegCloseKey(opened);
    if (status == ERROR_SUCCESS && keys == 0 && values <= (hasDefault ? 1U : 0U)) {
        note(RegDeleteKeyW(m_root, pathOf(key).c_str()));
    }
}

std::wstring ClassesKey::read(const std::wstring& key, const std::wstring& name) const
{
    const std::wstring path = pathOf(key);
    const wchar_t* const value = name.empty() ? nullptr : name.c_str();
    DWORD bytes = 0;
    if (RegGetValueW(m_root, path.c_str(), value, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    if (RegGetValueW(m_root, path.c_str(), value, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    text.resize(text.find(L'\0'));
    return text;
}

bool ClassesKey::otherWidthHas(const std::wstring& key) const
{
    constexpr REGSAM otherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
    HKEY opened = nullptr;
    if (RegOpenKeyExW(m_root, pathOf(key).c_str(), 0, KEY_QUERY_VALUE | otherView, &opened) !=
        ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(opened);
    return true;
}

std::wstring guidText(const GUID& guid)
{
    wchar_t text[40] = L"";
    StringFromGUID2(guid, text, 40);
    return text;
}

} // namespace zul
