// Arrays: a random program of making, reading, writing, locking, copying and destroying, held against a list of the
// elements that should be there.
#include "automation/Variant.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/Values.h"

#include <array>
#include <limits>
#include <vector>

using namespace zul;
using fuzz::Input;
using fuzz::require;

namespace {

constexpr std::array<VARTYPE, 24> types{VT_I1,      VT_UI1,     VT_I2,      VT_UI2,   VT_BOOL,  VT_I4,
                                        VT_UI4,     VT_INT,     VT_UINT,    VT_R4,    VT_ERROR, VT_I8,
                                        VT_UI8,     VT_R8,      VT_CY,      VT_DATE,  VT_BSTR,  VT_DISPATCH,
                                        VT_UNKNOWN, VT_VARIANT, VT_DECIMAL, VT_EMPTY, VT_NULL,  VT_RECORD};

/// An array, and what it should hold.
struct Checked
{
    SAFEARRAY* array = nullptr;
    VARTYPE type = VT_EMPTY;
    std::vector<SAFEARRAYBOUND> bounds; ///< the first dimension first
    std::vector<Variant> elements;      ///< the first index fastest
    ULONG locks = 0;
};

std::size_t countOf(const std::vector<SAFEARRAYBOUND>& bounds)
{
    std::size_t count = 1;
    for (const SAFEARRAYBOUND& bound : bounds) {
        count *= bound.cElements;
    }
    return count;
}

/// The same where it may be beyond counting; 0 where a dimension has no elements.
double sizeOf(const std::vector<SAFEARRAYBOUND>& bounds)
{
    double size = 1;
    for (const SAFEARRAYBOUND& bound : bounds) {
        size *= bound.cElements;
    }
    return size;
}

/// An element's value in a form that can be compared: texts by their bytes, objects by who they are.
bool same(const Variant& a, const Variant& b)
{
    if (a.vt != b.vt) {
        return false;
    }
    switch (a.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return true;
    case VT_BSTR:
        return SysStringByteLen(a.bstrVal) == SysStringByteLen(b.bstrVal) &&
               (SysStringByteLen(a.bstrVal) == 0 ||
                std::memcmp(a.bstrVal, b.bstrVal, SysStringByteLen(a.bstrVal)) == 0);
    case VT_DECIMAL:
        return a.decVal.Hi32 == b.decVal.Hi32 && a.decVal.Lo64 == b.decVal.Lo64;
    default:
        return (a.vt & VT_ARRAY) != 0 || a.llVal == b.llVal;
    }
}

/// The bits of an element that has no pointers, in the size of its type.
Variant numberOf(const void* bytes, ULONG size, VARTYPE type)
{
    Variant value;
    if (type == VT_DECIMAL) {
        std::memcpy(&value.decVal, bytes, sizeof value.decVal);
    } else {
        value.llVal = 0;
        std::memcpy(&value.llVal, bytes, size);
    }
    value.vt = type;
    return value;
}

Variant elementOf(const Checked& checked, LONG* indices)
{
    Variant value;
    alignas(VARIANT) std::array<char, sizeof(VARIANT)> place{};
    require(SafeArrayGetElement(checked.array, indices, place.data()) == S_OK,
            "an element within the bounds is given");
    if (checked.type == VT_VARIANT) {
        std::memcpy(static_cast<VARIANT*>(&value), place.data(), sizeof(VARIANT));
    } else if (checked.type == VT_BSTR) {
        std::memcpy(&value.bstrVal, place.data(), sizeof value.bstrVal);
        value.vt = VT_BSTR;
    } else if (checked.type == VT_DISPATCH || checked.type == VT_UNKNOWN) {
        std::memcpy(&value.punkVal, place.data(), sizeof value.punkVal);
        value.vt = checked.type;
    } else {
        value = numberOf(place.data(), SafeArrayGetElemsize(checked.array), checked.type);
    }
    return value;
}

class Program
{
public:
    explicit Program(Input& input)
        : m_input(input)
        , m_values(input)
    {}

    void run()
    {
        for (int steps = 0; !m_input.ended() && steps < 200; ++steps) {
            switch (m_input.below(8)) {
            case 0:
                create();
                break;
            case 1:
            case 2:
                put();
                break;
            case 3:
                get();
                break;
            case 4:
                lock();
                break;
            case 5:
                copy();
                break;
            case 6:
                ask();
                break;
            default:
                destroy();
                break;
            }
        }
        for (Checked& checked : m_arrays) {
            while (checked.locks > 0) {
                require(SafeArrayUnlock(checked.array) == S_OK, "a lock can be taken off");
                --checked.locks;
            }
            check(checked);
            require(SafeArrayDestroy(checked.array) == S_OK, "an array that nobody locks can be destroyed");
        }
    }

private:
    Checked* chosen()
    {
        return m_arrays.empty() ? nullptr
                                : &m_arrays[m_input.below(static_cast<std::uint32_t>(m_arrays.size()))];
    }

    void create()
    {
        constexpr std::size_t mostArrays = 6;
        constexpr std::size_t mostElements = 512;
        Checked made;
        made.type = types[m_input.below(types.size())];
        const UINT dimensions = m_input.below(5);
        for (UINT i = 0; i < dimensions; ++i) {
            const bool huge = m_input.number<std::uint8_t>() == 0xFF;
            made.bounds.push_back({huge ? m_input.number<std::uint32_t>() : m_input.below(8),
                                   huge ? m_input.number<std::int32_t>() : m_input.number<std::int8_t>()});
        }
        // A size beyond all sense is asked for and refused; one that only takes long to make is passed over.
        constexpr double slow = 1e6;
        constexpr double senseless = 1e11;
        const double size = sizeOf(made.bounds);
        if (size > slow && size < senseless) {
            return;
        }
        made.array = SafeArrayCreate(made.type, dimensions, dimensions == 0 ? nullptr : made.bounds.data());
        require(size < senseless || made.array == nullptr, "no array without end");
        const bool holdable = made.type != VT_EMPTY && made.type != VT_NULL && made.type != VT_RECORD;
        require((holdable && dimensions > 0) || made.array == nullptr, "no array of what there is none of");
        if (made.array == nullptr) {
            return;
        }
        require(SafeArrayGetDim(made.array) == dimensions, "as many dimensions as asked for");
        // Elements behind the largest index cannot be named.
        const bool nameable =
            std::all_of(made.bounds.begin(), made.bounds.end(), [](const SAFEARRAYBOUND& bound) {
                return std::int64_t{bound.lLbound} + bound.cElements <= std::numeric_limits<LONG>::max();
            });
        if (!nameable || countOf(made.bounds) > mostElements || m_arrays.size() >= mostArrays) {
            require(SafeArrayDestroy(made.array) == S_OK, "a new array can be destroyed");
            return;
        }
        Variant nothing;
        if (made.type == VT_DECIMAL) {
            nothing.decVal = DECIMAL{};
        }
        nothing.vt = made.type == VT_VARIANT ? static_cast<VARTYPE>(VT_EMPTY) : made.type;
        made.elements.assign(countOf(made.bounds), nothing);
        m_arrays.push_back(std::move(made));
    }

    /// Indices within the bounds as a rule. @return whether they are
    bool indices(const Checked& checked, std::vector<LONG>& at, std::size_t& place)
    {
        bool inside = true;
        std::size_t stride = 1;
        place = 0;
        for (const SAFEARRAYBOUND& bound : checked.bounds) {
            const std::int64_t offset = m_input.number<std::int8_t>();
            const std::int64_t index = std::int64_t{bound.lLbound} + offset;
            at.push_back(static_cast<LONG>(index));
            inside = inside && index == at.back() && offset >= 0 && offset < bound.cElements;
            place += static_cast<std::size_t>(inside ? offset : 0) * stride;
            stride *= bound.cElements;
        }
        return inside;
    }

    void put()
    {
        Checked* const checked = chosen();
        if (checked == nullptr) {
            return;
        }
        std::vector<LONG> at;
        std::size_t place = 0;
        const bool inside = indices(*checked, at, place);
        Variant element;
        void* given = nullptr;
        std::array<std::uint64_t, 2> raw{};
        switch (checked->type) {
        case VT_VARIANT:
            element = Variant(*m_values.variant());
            if ((element.vt & VT_BYREF) != 0) {
                element.clear(); // what it refers to may go before the array
            }
            given = static_cast<VARIANT*>(&element);
            break;
        case VT_BSTR: {
            const BSTR text = m_values.text();
            given = text;
            element.vt = VT_BSTR;
            element.bstrVal = text == nullptr ? nullptr
                                              : SysAllocStringByteLen(reinterpret_cast<const char*>(text),
                                                                      SysStringByteLen(text));
            break;
        }
        case VT_DISPATCH:
        case VT_UNKNOWN: {
            IUnknown* const object = m_values.object();
            given = object;
            element = Variant::fromUnknown(object);
            element.vt = checked->type;
            break;
        }
        default:
            raw = {m_input.number<std::uint64_t>(), m_input.number<std::uint64_t>()};
            given = raw.data();
            element = numberOf(raw.data(), SafeArrayGetElemsize(checked->array), checked->type);
            break;
        }
        const HRESULT result = SafeArrayPutElement(checked->array, at.data(), given);
        require(result == (inside ? S_OK : DISP_E_BADINDEX), "an element is taken within the bounds alone");
        if (inside) {
            checked->elements[place] = element;
        }
    }

    void get()
    {
        Checked* const checked = chosen();
        if (checked == nullptr) {
            return;
        }
        std::vector<LONG> at;
        std::size_t place = 0;
        if (indices(*checked, at, place)) {
            require(same(elementOf(*checked, at.data()), checked->elements[place]),
                    "an element is what was put there");
            void* where = nullptr;
            require(SafeArrayPtrOfIndex(checked->array, at.data(), &where) == S_OK &&
                        where == static_cast<char*>(checked->array->pvData) +
                                     place * SafeArrayGetElemsize(checked->array),
                    "an element stands where its indices say");
        } else {
            alignas(VARIANT) std::array<char, sizeof(VARIANT)> untouched{};
            require(SafeArrayGetElement(checked->array, at.data(), untouched.data()) == DISP_E_BADINDEX,
                    "no element outside of the bounds");
        }
    }

    void lock()
    {
        Checked* const checked = chosen();
        if (checked == nullptr) {
            return;
        }
        void* bytes = nullptr;
        if (m_input.flag()) {
            require(SafeArrayAccessData(checked->array, &bytes) == S_OK && bytes == checked->array->pvData,
                    "the elements are given");
            ++checked->locks;
        } else {
            require(SafeArrayUnaccessData(checked->array) == (checked->locks > 0 ? S_OK : E_UNEXPECTED),
                    "as many locks come off as were put on");
            checked->locks -= checked->locks > 0 ? 1 : 0;
        }
    }

    void copy()
    {
        constexpr std::size_t mostArrays = 6;
        const Checked* const checked = chosen();
        if (checked == nullptr || m_arrays.size() >= mostArrays) {
            return;
        }
        Checked copied = *checked;
        copied.locks = 0;
        const HRESULT result = SafeArrayCopy(checked->array, &copied.array);
        require(result == S_OK && copied.array != nullptr && copied.array != checked->array,
                "an array is copied");
        check(copied);
        m_arrays.push_back(std::move(copied));
    }

    void ask()
    {
        const Checked* const checked = chosen();
        if (checked == nullptr) {
            return;
        }
        const UINT dimension = m_input.below(6);
        const bool known = dimension > 0 && dimension <= checked->bounds.size();
        LONG lower = 0;
        LONG upper = 0;
        require(SafeArrayGetLBound(checked->array, dimension, &lower) == (known ? S_OK : DISP_E_BADINDEX) &&
                    SafeArrayGetUBound(checked->array, dimension, &upper) == (known ? S_OK : DISP_E_BADINDEX),
                "bounds of a dimension that there is");
        if (known) {
            const SAFEARRAYBOUND& bound = checked->bounds[dimension - 1];
            require(lower == bound.lLbound && static_cast<std::uint32_t>(upper) ==
                                                  static_cast<std::uint32_t>(lower) + bound.cElements - 1,
                    "the bounds that it was made with");
        }
        VARTYPE type = VT_EMPTY;
        require(SafeArrayGetVartype(checked->array, &type) == S_OK && type == checked->type,
                "the type of its elements");
    }

    void destroy()
    {
        Checked* const checked = chosen();
        if (checked == nullptr) {
            return;
        }
        const HRESULT result = SafeArrayDestroy(checked->array);
        require(result == (checked->locks > 0 ? DISP_E_ARRAYISLOCKED : S_OK), "a locked array stays");
        if (SUCCEEDED(result)) {
            m_arrays.erase(m_arrays.begin() + (checked - m_arrays.data()));
        }
    }

    static void check(const Checked& checked)
    {
        std::vector<LONG> at;
        for (const SAFEARRAYBOUND& bound : checked.bounds) {
            at.push_back(bound.lLbound);
        }
        for (const Variant& element : checked.elements) {
            require(same(elementOf(checked, at.data()), element), "every element is what was put there");
            for (std::size_t i = 0; i < at.size(); ++i) {
                const SAFEARRAYBOUND& bound = checked.bounds[i];
                if (std::int64_t{at[i]} + 1 < std::int64_t{bound.lLbound} + bound.cElements) {
                    ++at[i];
                    break;
                }
                at[i] = bound.lLbound;
            }
        }
    }

    Input& m_input;
    fuzz::Values m_values;
    std::vector<Checked> m_arrays;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    {
        Program(input).run();
    }
    require(fuzz::Values::objectsAlive() == 0, "every reference is given back");
    return 0;
}
