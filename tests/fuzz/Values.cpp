#include "tests/fuzz/Values.h"

#include <array>
#include <limits>

namespace zul::fuzz {

namespace {

long alive = 0;

constexpr std::array<VARTYPE, 23> plainTypes{
    VT_EMPTY, VT_NULL,     VT_I2,    VT_I4,   VT_R4,      VT_R8,      VT_CY,      VT_DATE,
    VT_BSTR,  VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT, VT_UNKNOWN, VT_DECIMAL, VT_I1,
    VT_UI1,   VT_UI2,      VT_UI4,   VT_I8,   VT_UI8,     VT_INT,     VT_UINT};

class Unknown final : public ComObject<IUnknown>
{
public:
    Unknown() { ++alive; }
    ~Unknown() override { --alive; }
};

/// Answers every call with a value that it was made with, as an object does that stands for a plain value.
class Dispatch final : public ComObject<IDispatch>
{
public:
    explicit Dispatch(Input& input)
        : m_result(static_cast<HRESULT>(input.flag() ? S_OK : E_FAIL))
    {
        ++alive;
        switch (input.below(5)) {
        case 0:
            m_value = Variant::fromDouble(input.number<double>());
            break;
        case 1:
            m_value = Variant::fromText(input.text16());
            break;
        case 2:
            m_value.vt = VT_DISPATCH; // null
            break;
        case 3:
            m_value = Variant::fromUnknown(makeCom<Unknown>().get());
            break;
        default:
            break;
        }
    }
    ~Dispatch() override { --alive; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override
    {
        // A value that comes with a failure is the caller's to free all the same.
        return result != nullptr && SUCCEEDED(copyVariant(*result, m_value)) ? m_result : E_FAIL;
    }

private:
    Variant m_value;
    HRESULT m_result;
};

std::vector<std::string> bitsOf(const std::deque<VARIANT>& values)
{
    std::vector<std::string> all;
    for (const VARIANT& value : values) {
        std::string bits(reinterpret_cast<const char*>(&value), sizeof value);
        if (value.vt == VT_BSTR && value.bstrVal != nullptr) {
            bits.append(reinterpret_cast<const char*>(value.bstrVal), SysStringByteLen(value.bstrVal));
        }
        all.push_back(std::move(bits));
    }
    return all;
}

} // namespace

long Values::objectsAlive()
{
    return alive;
}

Values::~Values()
{
    for (std::deque<VARIANT>* const held : {&m_variants, &m_places}) {
        for (VARIANT& value : *held) {
            VariantClear(&value);
        }
    }
}

VARTYPE Values::type()
{
    const std::uint8_t choice = m_input.number<std::uint8_t>();
    if (choice == 0xFF) {
        return m_input.number<std::uint16_t>();
    }
    auto type = plainTypes[choice % plainTypes.size()];
    if (choice >= 0xE0) {
        type = static_cast<VARTYPE>(type | VT_BYREF);
    } else if (choice >= 0xC0) {
        type = static_cast<VARTYPE>(type | VT_ARRAY);
    }
    return type;
}

BSTR Values::text()
{
    VARIANT& value = m_variants.emplace_back(VARIANT{});
    const std::uint8_t kind = m_input.number<std::uint8_t>();
    if (kind == 0) {
        return nullptr;
    }
    value.vt = VT_BSTR;
    const std::string_view raw = m_input.bytes();
    if (kind < 8) {
        value.bstrVal = SysAllocStringByteLen(raw.data(), static_cast<UINT>(raw.size()));
    } else {
        // Letters of one byte: what a text of digits or a name needs.
        std::u16string letters;
        for (const char c : raw) {
            letters += static_cast<unsigned char>(c);
        }
        value.bstrVal = Bstr(letters).detach();
    }
    return value.bstrVal;
}

IUnknown* Values::object()
{
    VARIANT& value = m_variants.emplace_back(VARIANT{});
    value.vt = VT_UNKNOWN;
    switch (m_input.below(3)) {
    case 0:
        break;
    case 1:
        value.punkVal = makeCom<Unknown>().detach();
        break;
    default:
        value.punkVal = makeCom<Dispatch>(m_input).detach();
        break;
    }
    return value.punkVal;
}

VARIANT Values::reference(VARTYPE type)
{
    VARIANT& place = m_places.emplace_back(VARIANT{});
    if (type == VT_BSTR) {
        place.bstrVal = text();
    } else {
        place.llVal = m_input.number<std::int16_t>();
    }
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(type | VT_BYREF);
    value.byref = &place.llVal;
    return value;
}

VARIANT Values::keep(Variant value, bool byReference)
{
    VARIANT& kept = m_variants.emplace_back(VARIANT{});
    value.detachTo(&kept);
    if (!byReference) {
        return kept;
    }
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(kept.vt | VT_BYREF);
    reference.byref = &kept.llVal;
    return reference;
}

Values::Snapshot Values::snapshot() const
{
    return {bitsOf(m_variants), bitsOf(m_places)};
}

bool Values::holds(const Snapshot& before) const
{
    const Snapshot now = snapshot();
    const auto begins = [](const std::vector<std::string>& all, const std::vector<std::string>& with) {
        return with.size() <= all.size() && std::equal(with.begin(), with.end(), all.begin());
    };
    return begins(now.values, before.values) && begins(now.places, before.places);
}

VARIANT* Values::variant(int depth)
{
    constexpr int deepest = 3;
    VARTYPE vt = type();
    VARIANT value{};
    if ((vt & VT_ARRAY) != 0) {
        value.vt = VT_ARRAY | VT_UI1;
        const std::string_view raw = m_input.bytes();
        const auto offset = static_cast<LONG>(m_input.number<std::int8_t>());
        const LONG lower = m_input.flag() ? std::numeric_limits<LONG>::max() - std::abs(offset) : offset;
        value.parray = SafeArrayCreateVector(VT_UI1, lower, static_cast<ULONG>(raw.size()));
        if (!raw.empty()) {
            std::memcpy(value.parray->pvData, raw.data(), raw.size());
        }
    } else if ((vt & VT_BYREF) != 0) {
        value.vt = static_cast<VARTYPE>(vt & (VT_TYPEMASK | VT_BYREF));
        if (depth < deepest && m_input.number<std::uint8_t>() != 0) {
            if ((vt & VT_TYPEMASK) == VT_VARIANT) {
                value.byref = variant(depth + 1);
            } else {
                VARIANT& place = m_places.emplace_back(VARIANT{});
                const VARTYPE inner = vt & VT_TYPEMASK;
                place.llVal = 0;
                if (inner == VT_BSTR) {
                    place.bstrVal = text();
                } else if (inner == VT_DISPATCH || inner == VT_UNKNOWN) {
                    IUnknown* const held = object();
                    void* asked = held;
                    // A dispatch pointer is one.
                    if (inner == VT_DISPATCH && held != nullptr &&
                        FAILED(held->QueryInterface(iidOf<IDispatch>(), &asked))) {
                        asked = nullptr;
                    } else if (inner == VT_DISPATCH && held != nullptr) {
                        held->Release(); // kept by the object's own variant
                    }
                    place.punkVal = static_cast<IUnknown*>(asked);
                } else if (inner == VT_DECIMAL) {
                    place.decVal = DECIMAL{};
                    place.decVal.Lo64 = m_input.number<std::uint64_t>();
                    place.decVal.scale = m_input.number<std::uint8_t>();
                    place.decVal.sign = m_input.number<std::uint8_t>();
                    place.decVal.wReserved = 0; // its own storage is no variant
                    value.byref = &place.decVal;
                } else {
                    place.llVal = m_input.number<std::int64_t>();
                }
                if (value.byref == nullptr) {
                    value.byref = &place.llVal;
                }
            }
        }
    } else if (vt == VT_BSTR) {
        value = VARIANT{};
        const BSTR own = text();
        value.vt = VT_BSTR;
        value.bstrVal =
            own == nullptr ? nullptr
                           : SysAllocStringByteLen(reinterpret_cast<const char*>(own), SysStringByteLen(own));
    } else if (vt == VT_UNKNOWN || vt == VT_DISPATCH) {
        value.vt = vt;
        IUnknown* const held = object();
        if (held != nullptr) {
            void* asked = nullptr;
            held->QueryInterface(vt == VT_DISPATCH ? iidOf<IDispatch>() : iidOf<IUnknown>(), &asked);
            value.punkVal = static_cast<IUnknown*>(asked);
        }
    } else if (vt == VT_DECIMAL) {
        value.decVal.Hi32 = m_input.number<std::uint32_t>();
        value.decVal.Lo64 = m_input.number<std::uint64_t>();
        value.decVal.scale = m_input.number<std::uint8_t>();
        value.decVal.sign = m_input.number<std::uint8_t>();
        value.vt = VT_DECIMAL; // last: it lies over the number
    } else {
        value.llVal = m_input.number<std::int64_t>();
        value.vt = vt;
    }
    m_variants.push_back(value);
    return &m_variants.back();
}

} // namespace zul::fuzz
