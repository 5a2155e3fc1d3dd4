// The environment of one test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

// Sets a variable of the environment and puts the old value back in the end. Null takes the variable away.
class ScopedEnvironment
{
public:
    ScopedEnvironment(const char* name, const char* value)
        : m_name(name)
    {
        if (const char* const old = std::getenv(name)) {
            m_old = old;
        }
        set(value);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() { set(m_old ? m_old->c_str() : nullptr); }

private:
    void set(const char* value)
    {
        if (value != nullptr) {
            ::setenv(m_name.c_str(), value, 1);
        } else {
            ::unsetenv(m_name.c_str());
        }
    }

    std::string m_name;
    std::optional<std::string> m_old;
};
