// The ordered, keyed collection of the automation run-time library, which carries column captions to the host.
#pragma once

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/Variant.h"

#include <Zul_Controls.h>

#include <string>
#include <vector>

namespace zul {

/// Positions begin at 1; keys are compared without regard to case. Errors are those of the classic
/// collection: 5 for an unknown key or a bad index type, 9 for a position out of range, 457 for a key that is
/// there already; as HRESULTs 0x800A0005, 0x800A0009, 0x800A01C9.
class CaptionCollection final : public ComObject<Dispatching<_Collection>>
{
public:
    HRESULT STDMETHODCALLTYPE Item(VARIANT* Index, VARIANT* pvarRet) override;
    HRESULT STDMETHODCALLTYPE Add(VARIANT* Item, VARIANT* Key, VARIANT* Before, VARIANT* After) override;
    HRESULT STDMETHODCALLTYPE Count(LONG* pi4) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override;
    HRESULT STDMETHODCALLTYPE _NewEnum(IUnknown** ppunk) override;

    /// Adds a caption at the end, without a key.
    void append(std::u16string_view caption);

private:
    struct Entry
    {
        std::u16string key;
        Variant value;
    };

    const DispTable<_Collection>& dispTable() const override;
    /// Zero-based place of an index variant; throws ComError.
    std::size_t place(const VARIANT* index) const;
    std::size_t placeOfKey(std::u16string_view key) const; ///< size() when there is none

    std::vector<Entry> m_entries;
};

} // namespace zul
