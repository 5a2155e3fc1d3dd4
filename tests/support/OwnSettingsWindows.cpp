#include "tests/support/OwnSettings.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace zul::test {

namespace {

/// The key that stands for HKEY_CURRENT_USER in this process, there until the process ends.
class OwnKey
{
public:
    OwnKey()
        : m_name(L"Software\\ZulTest" + std::to_wstring(GetCurrentProcessId()))
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, m_name.c_str()); // of an earlier process of that number
        if (RegCreateKeyExW(HKEY_CURRENT_USER, m_name.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &m_key, nullptr) != ERROR_SUCCESS ||
            RegOverridePredefKey(HKEY_CURRENT_USER, m_key) != ERROR_SUCCESS) {
            std::fputs("The tests cannot have settings of their own.\n", stderr);
            std::abort();
        }
    }
    OwnKey(const OwnKey&) = delete;
    OwnKey& operator=(const OwnKey&) = delete;
    ~OwnKey()
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegCloseKey(m_key);
        RegDeleteTreeW(HKEY_CURRENT_USER, m_name.c_str());
    }

    void empty() const { RegDeleteTreeW(m_key, nullptr); }

private:
    std::wstring m_name;
    HKEY m_key = nullptr;
};

} // namespace

void useOwnSettings(const QString& /*folder*/)
{
    static const OwnKey key;
    key.empty();
}

} // namespace zul::test
