// Arrays of automation. Elements stand with the first index running fastest; the bounds are kept with the last
// dimension first.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <oleauto.h>

#include "automation/Uuid.h"

namespace {

// Before the descriptor stands what its flags say, as on Windows: the element type in the last four bytes, or the
// interface id of the objects.
constexpr std::size_t hiddenBytes = 16;
constexpr std::size_t typeAt = hiddenBytes - sizeof(uint32_t);
static_assert(sizeof(IID) == hiddenBytes);
constexpr UINT maxDimensions = 60;
constexpr ULONG maxLocks = 0xFFFF;
// Flags that tell how a descriptor came about and go with no copy.
constexpr USHORT ofItsMaking = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE | FADF_CREATEVECTOR;

ULONG elementSize(VARTYPE vt) noexcept
{
    switch (vt) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
    case VT_INT_PTR:
    case VT_UINT_PTR:
        return sizeof(void*);
    case VT_VARIANT:
        return sizeof(VARIANT);
    case VT_DECIMAL:
        return sizeof(DECIMAL);
    default:
        return 0;
    }
}

USHORT featuresOf(VARTYPE vt) noexcept
{
    switch (vt) {
    case VT_BSTR:
        return FADF_HAVEVARTYPE | FADF_BSTR;
    case VT_DISPATCH:
        return FADF_HAVEIID | FADF_DISPATCH;
    case VT_UNKNOWN:
        return FADF_HAVEIID | FADF_UNKNOWN;
    case VT_VARIANT:
        return FADF_HAVEVARTYPE | FADF_VARIANT;
    default:
        return FADF_HAVEVARTYPE;
    }
}

char* hiddenOf(SAFEARRAY* array) noexcept
{
    return reinterpret_cast<char*>(array) - hiddenBytes;
}

SAFEARRAYBOUND* boundsOf(SAFEARRAY* array) noexcept
{
    return reinterpret_cast<SAFEARRAYBOUND*>(reinterpret_cast<char*>(array) + offsetof(SAFEARRAY, rgsabound));
}

std::size_t elementCount(SAFEARRAY* array) noexcept
{
    std::size_t count = 1;
    for (UINT i = 0; i < array->cDims; ++i) {
        count *= boundsOf(array)[i].cElements;
    }
    return count;
}

// Whether elements hold what has to be given back; all others are bytes, however many there are.
bool holdsReferences(USHORT features) noexcept
{
    return (features & (FADF_BSTR | FADF_DISPATCH | FADF_UNKNOWN | FADF_VARIANT)) != 0;
}

void destroyElement(USHORT features, void* element) noexcept
{
    if ((features & FADF_BSTR) != 0) {
        SysFreeString(*static_cast<BSTR*>(element));
    } else if ((features & (FADF_DISPATCH | FADF_UNKNOWN)) != 0) {
        if (IUnknown* const object = *static_cast<IUnknown**>(element)) {
            object->Release();
        }
    } else if ((features & FADF_VARIANT) != 0) {
        VariantClear(static_cast<VARIANT*>(element));
    }
}

// Copies one element to a place that holds nothing yet; the place is zeros after a failure.
HRESULT copyElement(USHORT features, ULONG size, void* place, const void* element) noexcept
{
    std::memset(place, 0, size);
    if ((features & FADF_BSTR) != 0) {
        const BSTR text = *static_cast<const BSTR*>(element);
        if (text != nullptr) {
            const BSTR copy =
                SysAllocStringByteLen(reinterpret_cast<const char*>(text), SysStringByteLen(text));
            std::memcpy(place, &copy, sizeof copy);
            return copy != nullptr ? S_OK : E_OUTOFMEMORY;
        }
        return S_OK;
    }
    if ((features & FADF_VARIANT) != 0) {
        return VariantCopy(static_cast<VARIANT*>(place), static_cast<const VARIANT*>(element));
    }
    std::memcpy(place, element, size);
    if ((features & (FADF_DISPATCH | FADF_UNKNOWN)) != 0) {
        if (IUnknown* const object = *static_cast<IUnknown**>(place)) {
            object->AddRef();
        }
    }
    return S_OK;
}

// A descriptor and its elements, all zeros but for the sizes; null without memory.
SAFEARRAY* allocate(UINT dimensions, ULONG elementBytes, std::size_t count) noexcept
{
    auto* const block = static_cast<char*>(
        std::calloc(1, hiddenBytes + sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND)));
    void* const data = std::calloc(count == 0 ? 1 : count, elementBytes);
    if (block == nullptr || data == nullptr) {
        std::free(block);
        std::free(data);
        return nullptr;
    }
    auto* const array = reinterpret_cast<SAFEARRAY*>(block + hiddenBytes);
    array->cDims = static_cast<USHORT>(dimensions);
    array->cbElements = elementBytes;
    array->pvData = data;
    return array;
}

} // namespace

SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT dimensions, SAFEARRAYBOUND* bounds)
{
    const ULONG size = elementSize(vt);
    if (size == 0 || dimensions == 0 || dimensions > maxDimensions || bounds == nullptr) {
        return nullptr;
    }
    std::size_t count = 1;
    for (UINT i = 0; i < dimensions; ++i) {
        if (bounds[i].cElements != 0 &&
            count > std::numeric_limits<int32_t>::max() / size / bounds[i].cElements) {
            return nullptr;
        }
        count *= bounds[i].cElements;
    }
    SAFEARRAY* const array = allocate(dimensions, size, count);
    if (array == nullptr) {
        return nullptr;
    }
    array->fFeatures = featuresOf(vt);
    if ((array->fFeatures & FADF_HAVEIID) != 0) {
        const IID& iid = vt == VT_DISPATCH ? zul::iidOf<IDispatch>() : zul::iidOf<IUnknown>();
        std::memcpy(hiddenOf(array), &iid, sizeof iid);
    } else {
        const uint32_t type = vt;
        std::memcpy(hiddenOf(array) + typeAt, &type, sizeof type);
    }
    for (UINT i = 0; i < dimensions; ++i) {
        boundsOf(array)[dimensions - 1 - i] = bounds[i];
    }
    return array;
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lowerBound, ULONG elements)
{
    SAFEARRAYBOUND bound{elements, lowerBound};
    SAFEARRAY* const array = SafeArrayCreate(vt, 1, &bound);
    if (array != nullptr) {
        array->fFeatures |= FADF_CREATEVECTOR;
    }
    return array;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array)
{
    if (array == nullptr) {
        return S_OK;
    }
    if (array->cLocks > 0) {
        return DISP_E_ARRAYISLOCKED;
    }
    auto* const data = static_cast<char*>(array->pvData);
    const std::size_t count = holdsReferences(array->fFeatures) ? elementCount(array) : 0;
    for (std::size_t i = 0; i < count; ++i) {
        destroyElement(array->fFeatures, data + i * array->cbElements);
    }
    std::free(data);
    std::free(reinterpret_cast<char*>(array) - hiddenBytes);
    return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy)
{
    if (copy == nullptr) {
        return E_INVALIDARG;
    }
    *copy = nullptr;
    if (array == nullptr) {
        return S_OK;
    }
    const std::size_t count = elementCount(array);
    SAFEARRAY* const result = allocate(array->cDims, array->cbElements, count);
    if (result == nullptr) {
        return E_OUTOFMEMORY;
    }
    result->fFeatures = static_cast<USHORT>(array->fFeatures & ~ofItsMaking);
    std::memcpy(boundsOf(result), boundsOf(array), array->cDims * sizeof(SAFEARRAYBOUND));
    // A descriptor of another making has nothing before it where its flags speak of nothing.
    if ((array->fFeatures & (FADF_HAVEVARTYPE | FADF_HAVEIID)) != 0) {
        std::memcpy(hiddenOf(result), hiddenOf(array), hiddenBytes);
    }
    const auto* const from = static_cast<const char*>(array->pvData);
    auto* const to = static_cast<char*>(result->pvData);
    if (!holdsReferences(array->fFeatures)) {
        std::memcpy(to, from, count * array->cbElements);
        *copy = result;
        return S_OK;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = i * array->cbElements;
        const HRESULT copied = copyElement(array->fFeatures, array->cbElements, to + at, from + at);
        if (FAILED(copied)) {
            SafeArrayDestroy(result);
            // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): freed by the block's beginning, before the descriptor
            return copied;
        }
    }
    *copy = result;
    return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array)
{
    return array == nullptr ? 0 : array->cDims;
}

UINT SafeArrayGetElemsize(SAFEARRAY* array)
{
    return array == nullptr ? 0 : array->cbElements;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound)
{
    if (array == nullptr || bound == nullptr) {
        return E_INVALIDARG;
    }
    if (dimension == 0 || dimension > array->cDims) {
        return DISP_E_BADINDEX;
    }
    *bound = boundsOf(array)[array->cDims - dimension].lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound)
{
    if (array == nullptr || bound == nullptr) {
        return E_INVALIDARG;
    }
    if (dimension == 0 || dimension > array->cDims) {
        return DISP_E_BADINDEX;
    }
    const SAFEARRAYBOUND& b = boundsOf(array)[array->cDims - dimension];
    *bound = static_cast<LONG>(std::int64_t{b.lLbound} + b.cElements - 1);
    return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* vt)
{
    if (array == nullptr || vt == nullptr) {
        return E_INVALIDARG;
    }
    if ((array->fFeatures & FADF_HAVEVARTYPE) != 0) {
        uint32_t type = 0;
        std::memcpy(&type, hiddenOf(array) + typeAt, sizeof type);
        *vt = static_cast<VARTYPE>(type);
        return S_OK;
    }
    // What a descriptor of another making does not tell is not guessed from the size of its elements.
    if ((array->fFeatures & (FADF_RECORD | FADF_HAVEIID)) == 0) {
        return E_INVALIDARG;
    }
    *vt = (array->fFeatures & FADF_RECORD) != 0     ? VT_RECORD
          : (array->fFeatures & FADF_DISPATCH) != 0 ? VT_DISPATCH
                                                    : VT_UNKNOWN;
    return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* array)
{
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    if (array->cLocks >= maxLocks) {
        return E_UNEXPECTED;
    }
    ++array->cLocks;
    return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array)
{
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    if (array->cLocks == 0) {
        return E_UNEXPECTED;
    }
    --array->cLocks;
    return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data)
{
    if (array == nullptr || data == nullptr) {
        return E_INVALIDARG;
    }
    const HRESULT locked = SafeArrayLock(array);
    *data = SUCCEEDED(locked) ? array->pvData : nullptr;
    return locked;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array)
{
    return SafeArrayUnlock(array);
}

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element)
{
    if (array == nullptr || indices == nullptr || element == nullptr) {
        return E_INVALIDARG;
    }
    std::size_t at = 0;
    std::size_t stride = 1;
    for (UINT i = 0; i < array->cDims; ++i) {
        const SAFEARRAYBOUND& bound = boundsOf(array)[array->cDims - 1 - i];
        const std::int64_t offset = std::int64_t{indices[i]} - bound.lLbound;
        if (offset < 0 || offset >= bound.cElements) {
            return DISP_E_BADINDEX;
        }
        at += static_cast<std::size_t>(offset) * stride;
        stride *= bound.cElements;
    }
    *element = static_cast<char*>(array->pvData) + at * array->cbElements;
    return S_OK;
}

// An array that is locked as often as can be gives and takes no elements: doing so is one lock more.
HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element)
{
    void* place = nullptr;
    const HRESULT found = SafeArrayPtrOfIndex(array, indices, &place);
    if (FAILED(found)) {
        return found;
    }
    if (array->cLocks >= maxLocks) {
        return E_UNEXPECTED;
    }
    if (element == nullptr) {
        return E_INVALIDARG;
    }
    return copyElement(array->fFeatures, array->cbElements, element, place);
}

// Texts and objects are passed as the pointers they are, everything else by a pointer to its storage.
HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element)
{
    void* place = nullptr;
    const HRESULT found = SafeArrayPtrOfIndex(array, indices, &place);
    if (FAILED(found)) {
        return found;
    }
    if (array->cLocks >= maxLocks) {
        return E_UNEXPECTED;
    }
    const bool isPointer = (array->fFeatures & (FADF_BSTR | FADF_DISPATCH | FADF_UNKNOWN)) != 0;
    if (element == nullptr && !isPointer) {
        return E_INVALIDARG;
    }
    alignas(VARIANT) char copy[sizeof(VARIANT)];
    const HRESULT copied = copyElement(array->fFeatures, array->cbElements, copy,
                                       isPointer ? static_cast<const void*>(&element) : element);
    if (FAILED(copied)) {
        return copied;
    }
    alignas(VARIANT) char old[sizeof(VARIANT)];
    std::memcpy(old, place, array->cbElements);
    std::memcpy(place, copy, array->cbElements);
    destroyElement(array->fFeatures, old);
    return S_OK;
}
