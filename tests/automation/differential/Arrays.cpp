#include "tests/automation/differential/Answer.h"
#include "tests/automation/differential/Sections.h"
#include "tests/automation/differential/Source.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace differential {

namespace {

std::string hex(unsigned long value)
{
    char text[16];
    std::snprintf(text, sizeof text, "%lx", value);
    return text;
}

// An object that tells how often it is held.
class Counted final : public IUnknown
{
public:
    // Not counted itself: it lives on the stack.
    virtual ~Counted() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override { return --m_references; }
    [[nodiscard]] std::string references() const { return std::to_string(m_references); }

private:
    ULONG m_references = 1;
};

std::string arrayAnswer(SAFEARRAY* array)
{
    if (array == nullptr) {
        return "none";
    }
    VARTYPE type = VT_EMPTY;
    const HRESULT typed = SafeArrayGetVartype(array, &type);
    return "flags " + hex(array->fFeatures) + " size " + std::to_string(SafeArrayGetElemsize(array)) +
           " type " + (SUCCEEDED(typed) ? nameOf(type) : nameOf(typed)) + " dimensions " +
           std::to_string(SafeArrayGetDim(array));
}

void printCreation()
{
    for (unsigned code = 0; code <= 75; ++code) {
        for (const unsigned modifier : {0U, unsigned{VT_ARRAY}, unsigned{VT_BYREF}}) {
            const auto type = static_cast<VARTYPE>(code | modifier);
            if (code == VT_RECORD) {
                continue; // needs a description of the record
            }
            Line line("array of " + nameOf(type));
            SAFEARRAYBOUND bounds[] = {{2, 1}, {3, -1}};
            for (const UINT dimensions : {1U, 2U}) {
                SAFEARRAY* const array = SafeArrayCreate(type, dimensions, bounds);
                line.add(std::to_string(dimensions), arrayAnswer(array));
                SAFEARRAY* copy = nullptr;
                line.add("copy" + std::to_string(dimensions), SafeArrayCopy(array, &copy),
                         [&] { return arrayAnswer(copy); });
                SafeArrayDestroy(copy);
                SafeArrayDestroy(array);
            }
            SAFEARRAY* const vector = SafeArrayCreateVector(type, 1, 2);
            line.add("vector", arrayAnswer(vector));
            SAFEARRAY* copy = nullptr;
            line.add("copied vector", SafeArrayCopy(vector, &copy), [&] { return arrayAnswer(copy); });
            SafeArrayDestroy(copy);
            SafeArrayDestroy(vector);
            line.print();
        }
    }
    Line line("arrays that cannot be");
    SAFEARRAYBOUND bounds[] = {{2, 0}, {0, 5}};
    line.add("no dimensions", arrayAnswer(SafeArrayCreate(VT_I4, 0, bounds)));
    line.add("no bounds", arrayAnswer(SafeArrayCreate(VT_I4, 1, nullptr)));
    line.add("too large", arrayAnswer(SafeArrayCreateVector(VT_I8, 0, 0x20000000)));
    line.add("too many", arrayAnswer(SafeArrayCreateVector(VT_I8, 0, 0xFFFFFFFF)));
    SAFEARRAY* const empty = SafeArrayCreate(VT_I4, 2, bounds);
    line.add("of nothing", arrayAnswer(empty));
    LONG bound = 77;
    line.add("upper bound of nothing", SafeArrayGetUBound(empty, 2, &bound),
             [&] { return std::to_string(bound); });
    SafeArrayDestroy(empty);
    line.print();
}

void printBounds()
{
    SAFEARRAYBOUND bounds[] = {{2, 1}, {3, -1}, {1, 100}};
    SAFEARRAY* const array = SafeArrayCreate(VT_I2, 3, bounds);
    for (const UINT dimension : {0U, 1U, 2U, 3U, 4U, 0xFFFFFFFFU}) {
        Line line("bounds of dimension " + std::to_string(dimension));
        LONG bound = 77;
        line.add("lower", SafeArrayGetLBound(array, dimension, &bound),
                 [&] { return std::to_string(bound); });
        bound = 77;
        line.add("upper", SafeArrayGetUBound(array, dimension, &bound),
                 [&] { return std::to_string(bound); });
        line.print();
    }
    short number = 0;
    for (LONG k = 100; k < 101; ++k) {
        for (LONG j = -1; j < 2; ++j) {
            for (LONG i = 1; i < 3; ++i, ++number) {
                LONG indices[] = {i, j, k};
                SafeArrayPutElement(array, indices, &number);
            }
        }
    }
    void* data = nullptr;
    Line line("elements in memory");
    line.add("access", nameOf(SafeArrayAccessData(array, &data)));
    for (int i = 0; i < 6; ++i) {
        line.add(std::to_string(i), std::to_string(static_cast<short*>(data)[i]));
    }
    line.add("destroy while accessed", nameOf(SafeArrayDestroy(array)));
    line.add("unaccess", nameOf(SafeArrayUnaccessData(array)));
    line.add("unaccess again", nameOf(SafeArrayUnaccessData(array)));
    line.add("unlock", nameOf(SafeArrayUnlock(array)));
    line.print();
    for (const LONG index : {-2147483647, -2, -1, 0, 1, 2, 3, 2147483647}) {
        LONG indices[] = {index, 0, 100};
        void* place = nullptr;
        short value = 77;
        Line access("index " + std::to_string(index));
        const HRESULT found = SafeArrayPtrOfIndex(array, indices, &place);
        access.add("place", nameOf(found) + " " +
                                (SUCCEEDED(found) ? std::to_string(static_cast<char*>(place) -
                                                                   static_cast<char*>(array->pvData))
                                                  : ""));
        access.add("get", SafeArrayGetElement(array, indices, &value), [&] { return std::to_string(value); });
        access.add("put", nameOf(SafeArrayPutElement(array, indices, &value)));
        access.add("locks", std::to_string(array->cLocks));
        access.print();
    }
    SafeArrayDestroy(array);
}

void printNothing()
{
    LONG index = 0;
    LONG number = 0;
    void* place = nullptr;
    VARTYPE type = VT_EMPTY;
    SAFEARRAY* copy = nullptr;
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, 0, 1);
    Line line("nothing where something is wanted");
    line.add("destroy", nameOf(SafeArrayDestroy(nullptr)));
    line.add("copy", nameOf(SafeArrayCopy(nullptr, &copy)));
    line.add("copy to", nameOf(SafeArrayCopy(array, nullptr)));
    line.add("dimensions", std::to_string(SafeArrayGetDim(nullptr)));
    line.add("element size", std::to_string(SafeArrayGetElemsize(nullptr)));
    line.add("lower bound", nameOf(SafeArrayGetLBound(nullptr, 1, &number)));
    line.add("upper bound", nameOf(SafeArrayGetUBound(nullptr, 1, &number)));
    line.add("type", nameOf(SafeArrayGetVartype(nullptr, &type)));
    line.add("type to", nameOf(SafeArrayGetVartype(array, nullptr)));
    line.add("lock", nameOf(SafeArrayLock(nullptr)));
    line.add("unlock", nameOf(SafeArrayUnlock(nullptr)));
    line.add("access", nameOf(SafeArrayAccessData(nullptr, &place)));
    line.add("access to", nameOf(SafeArrayAccessData(array, nullptr)));
    line.add("unaccess", nameOf(SafeArrayUnaccessData(nullptr)));
    line.add("place", nameOf(SafeArrayPtrOfIndex(nullptr, &index, &place)));
    line.add("place without index", nameOf(SafeArrayPtrOfIndex(array, nullptr, &place)));
    line.add("place to", nameOf(SafeArrayPtrOfIndex(array, &index, nullptr)));
    line.add("get", nameOf(SafeArrayGetElement(nullptr, &index, &number)));
    line.add("get without index", nameOf(SafeArrayGetElement(array, nullptr, &number)));
    line.add("get to", nameOf(SafeArrayGetElement(array, &index, nullptr)));
    line.add("put", nameOf(SafeArrayPutElement(nullptr, &index, &number)));
    line.add("put without index", nameOf(SafeArrayPutElement(array, nullptr, &number)));
    line.add("locks", std::to_string(array->cLocks));
    line.print();
    SafeArrayDestroy(array);
}

void printLocks()
{
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, 0, 1);
    Line line("locks");
    long count = 0;
    HRESULT result = S_OK;
    while (SUCCEEDED(result) && count < 70000) {
        result = SafeArrayLock(array);
        ++count;
    }
    line.add("refused at",
             std::to_string(count) + " " + nameOf(result) + " " + std::to_string(array->cLocks));
    void* data = nullptr;
    line.add("access at the limit", nameOf(SafeArrayAccessData(array, &data)));
    line.add("destroy", nameOf(SafeArrayDestroy(array)));
    LONG index = 0;
    LONG number = 5;
    line.add("put while locked", nameOf(SafeArrayPutElement(array, &index, &number)));
    array->cLocks = 0;
    line.add("unlock", nameOf(SafeArrayUnlock(array)));
    line.print();
    SafeArrayDestroy(array);
}

// Descriptors that another hand has made: the element type is known by their flags alone, or not at all.
void printForeign()
{
    for (const unsigned flags :
         {0U,     0x1U,   0x2U,   0x20U,  0x40U,  0x80U,  0x100U,  0x180U, 0x200U, 0x240U,
          0x400U, 0x440U, 0x800U, 0x880U, 0x280U, 0x480U, 0x2080U, 0x300U, 0x600U, 0xC00U}) {
        for (const unsigned hidden : {0U, unsigned{VT_I4}, unsigned{VT_BSTR}}) {
            struct
            {
                std::uint32_t before[4];
                SAFEARRAY array;
            } foreign{};
            static_assert(offsetof(decltype(foreign), array) == 16);
            foreign.before[3] = hidden;
            foreign.array.cDims = 1;
            foreign.array.fFeatures = static_cast<USHORT>(flags);
            foreign.array.cbElements = 8;
            VARTYPE type = 77;
            const HRESULT result = SafeArrayGetVartype(&foreign.array, &type);
            Line line("foreign descriptor with flags " + hex(flags) + " and " + std::to_string(hidden) +
                      " before it");
            line.add("type", nameOf(result) + " " + (SUCCEEDED(result) ? nameOf(type) : ""));
            line.print();
        }
    }
}

void printElements()
{
    LONG index = 1;
    {
        SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 0, 2);
        const BSTR text = makeText(u"citt\u00E0");
        Line line("texts as elements");
        line.add("put", nameOf(SafeArrayPutElement(array, &index, text)));
        BSTR back = nullptr;
        line.add("get", SafeArrayGetElement(array, &index, &back), [&] { return quoted(textOf(back)); });
        SysFreeString(back);
        line.add("put nothing", nameOf(SafeArrayPutElement(array, &index, nullptr)));
        line.add("get nothing", SafeArrayGetElement(array, &index, &back),
                 [&] { return quoted(textOf(back)); });
        SysFreeString(back);
        SysFreeString(text);
        line.print();
        SafeArrayDestroy(array);
    }
    {
        Counted object;
        SAFEARRAY* const array = SafeArrayCreateVector(VT_UNKNOWN, 0, 2);
        Line line("objects as elements");
        line.add("put", SafeArrayPutElement(array, &index, static_cast<IUnknown*>(&object)),
                 [&] { return object.references(); });
        IUnknown* back = nullptr;
        line.add("get", SafeArrayGetElement(array, &index, &back), [&] { return object.references(); });
        SAFEARRAY* copy = nullptr;
        line.add("copy", SafeArrayCopy(array, &copy), [&] { return object.references(); });
        line.add("destroy", SafeArrayDestroy(copy), [&] { return object.references(); });
        line.add("put nothing", SafeArrayPutElement(array, &index, nullptr),
                 [&] { return object.references(); });
        line.print();
        SafeArrayDestroy(array);
    }
    {
        SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, 2);
        VARIANT text = fromText(u"Rossi");
        Line line("variants as elements");
        line.add("put", nameOf(SafeArrayPutElement(array, &index, &text)));
        VARIANT back = empty(VT_EMPTY);
        line.add("get", SafeArrayGetElement(array, &index, &back), [&] { return typedText(back); });
        VariantClear(&back);
        VARIANT bad = empty(99);
        line.add("put bad", nameOf(SafeArrayPutElement(array, &index, &bad)));
        line.add("get after", SafeArrayGetElement(array, &index, &back), [&] { return typedText(back); });
        VariantClear(&back);
        VariantClear(&text);
        line.print();
        SafeArrayDestroy(array);
    }
}

} // namespace

void printArrays()
{
    printCreation();
    printBounds();
    printNothing();
    printLocks();
    printForeign();
    printElements();
}

} // namespace differential
