#include "session/CaptionCollection.h"

#include "automation/Enumerator.h"
#include "automation/ErrorInfo.h"
#include "base/CaseFold.h"

namespace zul {

namespace {

constexpr const char16_t* Source = u"Collection";

constexpr HRESULT controlError(long number)
{
    return static_cast<HRESULT>(0x800A0000U + static_cast<unsigned long>(number));
}

[[noreturn]] void fail(long number, std::u16string_view description)
{
    throw ComError(controlError(number), description);
}

bool isGiven(const VARIANT* argument)
{
    return argument != nullptr && argument->vt != VT_EMPTY &&
           !(argument->vt == VT_ERROR && argument->scode == DISP_E_PARAMNOTFOUND);
}

/// A variant without the reference it may hold.
Variant plain(const VARIANT* argument)
{
    Variant value;
    if (FAILED(copyWithoutReference(value, *argument))) {
        fail(5, u"Invalid procedure call or argument");
    }
    return value;
}

/// A copy into an empty place; a copy that fails is the caller's error and leaves the place empty.
HRESULT handOutCopy(const Variant& value, VARIANT& place)
{
    VariantInit(&place);
    const HRESULT copied = copyVariant(place, value);
    return FAILED(copied) ? reportError(copied, u"A value of the collection cannot be copied", Source) : S_OK;
}

using ValueEnumerator = Enumerator<IEnumVARIANT, Variant, VARIANT, handOutCopy>;

} // namespace

HRESULT CaptionCollection::Item(VARIANT* Index, VARIANT* pvarRet)
{
    if (pvarRet == nullptr) {
        return E_POINTER;
    }
    VariantInit(pvarRet);
    return comGuard(Source, [&] { return handOutCopy(m_entries[place(Index)].value, *pvarRet); });
}

HRESULT CaptionCollection::Add(VARIANT* Item, VARIANT* Key, VARIANT* Before, VARIANT* After)
{
    if (Item == nullptr) {
        return E_POINTER;
    }
    return comGuard(Source, [&] {
        Entry entry;
        entry.value = plain(Item);
        if (isGiven(Key)) {
            const Variant key = plain(Key);
            if (key.vt != VT_BSTR) {
                fail(13, u"Type mismatch");
            }
            entry.key = std::u16string(key.text());
            if (placeOfKey(entry.key) != m_entries.size()) {
                fail(457, u"This key is already associated with an element of this collection");
            }
        }
        if (isGiven(Before) && isGiven(After)) {
            fail(5, u"Invalid procedure call or argument");
        }
        std::size_t at = m_entries.size();
        if (isGiven(Before)) {
            at = place(Before);
        } else if (isGiven(After)) {
            at = place(After) + 1;
        }
        m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(at), std::move(entry));
    });
}

HRESULT CaptionCollection::Count(LONG* pi4)
{
    if (pi4 == nullptr) {
        return E_POINTER;
    }
    *pi4 = static_cast<LONG>(m_entries.size());
    return S_OK;
}

HRESULT CaptionCollection::Remove(VARIANT* Index)
{
    return comGuard(u"Collection",
                    [&] { m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(place(Index))); });
}

HRESULT CaptionCollection::_NewEnum(IUnknown** ppunk)
{
    if (ppunk == nullptr) {
        return E_POINTER;
    }
    *ppunk = nullptr;
    return comGuard(Source, [&] {
        std::vector<Variant> values(m_entries.size());
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            if (const HRESULT copied = handOutCopy(m_entries[i].value, *values[i].put()); FAILED(copied)) {
                return copied;
            }
        }
        *ppunk = makeCom<ValueEnumerator>(std::move(values)).detach();
        return S_OK;
    });
}

void CaptionCollection::append(std::u16string_view caption)
{
    m_entries.push_back({{}, Variant::fromText(caption)});
}

std::size_t CaptionCollection::placeOfKey(std::u16string_view key) const
{
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (!m_entries[i].key.empty() && equalNames(m_entries[i].key, key)) {
            return i;
        }
    }
    return m_entries.size();
}

std::size_t CaptionCollection::place(const VARIANT* index) const
{
    if (index == nullptr) {
        fail(5, u"Invalid procedure call or argument");
    }
    Variant position = plain(index);
    if (position.vt == VT_BSTR) {
        const std::size_t found = placeOfKey(position.text());
        if (found == m_entries.size()) {
            fail(5, u"Invalid procedure call or argument");
        }
        return found;
    }
    if (FAILED(position.changeType(VT_I4))) {
        fail(5, u"Invalid procedure call or argument");
    }
    if (position.lVal < 1 || static_cast<std::size_t>(position.lVal) > m_entries.size()) {
        fail(9, u"Subscript out of range");
    }
    return static_cast<std::size_t>(position.lVal) - 1;
}

const DispTable<_Collection>& CaptionCollection::dispTable() const
{
    using namespace dispatch;
    static const DispTable<_Collection> table{
        method("Item", 0, &_Collection::Item, {"Index"}),
        method("Add", 1, &_Collection::Add, {"Item", optional("Key"), optional("Before"), optional("After")}),
        method("Count", 2, &_Collection::Count),
        method("Remove", 3, &_Collection::Remove, {"Index"}),
        method("_NewEnum", -4, &_Collection::_NewEnum),
    };
    return table;
}

} // namespace zul
