// An enumerator of any of the system's kinds (IEnumVARIANT, IEnumConnections, …) over a list of our own.
#pragma once

#include "automation/ComObject.h"
#include "automation/ErrorInfo.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace zul {

// Walks the items as they stood when it was made. HandOut makes of one item what the caller gets, in storage that
// holds nothing yet. One that fails ends Next before it: what came before is handed out as if no more were there, and
// the failure is told by the Next that begins with it.
template <typename Interface, typename Item, typename Raw, HRESULT (*HandOut)(const Item&, Raw&)>
class Enumerator final : public ComObject<Interface>
{
public:
    explicit Enumerator(std::vector<Item> items, std::size_t next = 0)
        : m_items(std::move(items))
        , m_next(next)
    {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Raw* items, ULONG* fetched) override
    {
        if (fetched != nullptr) {
            *fetched = 0;
        }
        if (items == nullptr || (fetched == nullptr && count != 1)) {
            return E_POINTER;
        }
        ULONG given = 0;
        HRESULT result = S_OK;
        for (; given < count && m_next < m_items.size(); ++given, ++m_next) {
            result = HandOut(m_items[m_next], items[given]);
            if (FAILED(result)) {
                break;
            }
        }
        if (fetched != nullptr) {
            *fetched = given;
        }
        if (FAILED(result) && given == 0) {
            return result;
        }
        return given == count ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override
    {
        const std::size_t left = m_items.size() - m_next;
        m_next += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Reset() override
    {
        m_next = 0;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Clone(Interface** copy) override
    {
        if (copy == nullptr) {
            return E_POINTER;
        }
        *copy = nullptr;
        return comGuard({}, [&] { *copy = makeCom<Enumerator>(m_items, m_next).detach(); });
    }

private:
    std::vector<Item> m_items;
    std::size_t m_next;
};

} // namespace zul
