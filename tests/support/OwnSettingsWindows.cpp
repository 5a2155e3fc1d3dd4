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
    OwnKey() = default;
    OwnKey(const OwnKey&) = delete;
    OwnKey& operator=(const OwnKey&) = delete;
    ~OwnKey() { end(); }

    void begin()
    {
        end(); // also one that an earlier process of that number has left
        if (RegCreateKeyExW(HKEY_CURRENT_USER, m_name.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &m_key, nullptr) != ERROR_SUCCESS ||
            RegOverridePredefKey(HKEY_CURRENT_USER, m_key) != ERROR_SUCCESS) {
            std::fputs("The tests cannot have settings of their own.\n", stderr);
            std::abort();
        }
    }

    /// Stands for it still, but is no key any more.
    void lose()
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, m_name.c_str());
        RegOverridePredefKey(HKEY_CURRENT_USER, m_key);
    }

private:
    void end()
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        if (m_key != nullptr) {
            RegCloseKey(m_key);
            m_key = nullptr;
        }
        RegDeleteTreeW(HKEY_CURRENT_USER, m_name.c_str());
    }

    const std::wstring m_name = L"Software\\ZulTest" + std::to_wstring(GetCurrentProcessId());
    HKEY m_key = nullptr;
};

OwnKey& ownKey()
{
    static OwnKey key;
    return key;
}

} // namespace

void useOwnSettings(const QString& /*folder*/)
{
    ownKey().begin();
}

void loseOwnSettings()
{
    ownKey().lose();
}

} // namespace zul::test
