#include "session/CaptionCollection.h"

#include "tests/support/ComponentTest.h"
#include "tests/support/LateBound.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

/// How many copies go well before one fails; less than 0: all do.
int copiesBeforeFailure = -1;

} // namespace

// Stands before the runtime's own, to which it hands on.
HRESULT VariantCopy(VARIANTARG* destination, const VARIANTARG* source)
{
    if (copiesBeforeFailure >= 0 && copiesBeforeFailure-- == 0) {
        return DISP_E_BADVARTYPE;
    }
    using Function = HRESULT (*)(VARIANTARG*, const VARIANTARG*);
    static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "VariantCopy"));
    return next(destination, source);
}

namespace zul {
namespace {

using namespace test;

constexpr auto invalidCall = static_cast<HRESULT>(0x800A0005);
constexpr auto outOfRange = static_cast<HRESULT>(0x800A0009);
constexpr auto typeMismatch = static_cast<HRESULT>(0x800A000D);
constexpr auto duplicateKey = static_cast<HRESULT>(0x800A01C9);

class CaptionCollectionTest : public ::testing::Test
{
protected:
    HRESULT add(Variant item, Variant key = Variant::missing(), Variant before = Variant::missing(),
                Variant after = Variant::missing())
    {
        return captions->Add(&item, &key, &before, &after);
    }

    std::string item(Variant index, HRESULT* result = nullptr)
    {
        Variant value;
        const HRESULT got = captions->Item(&index, &value);
        if (result != nullptr) {
            *result = got;
        }
        return show(value);
    }

    HRESULT itemResult(Variant index)
    {
        HRESULT result = S_OK;
        item(std::move(index), &result);
        return result;
    }

    std::string all()
    {
        LONG count = 0;
        EXPECT_EQ(captions->Count(&count), S_OK);
        std::string list;
        for (LONG i = 1; i <= count; ++i) {
            list += item(number(i));
        }
        return list;
    }

    ComPtr<CaptionCollection> captions = makeCom<CaptionCollection>();
};

TEST_F(CaptionCollectionTest, KeepsTheOrderAndCountsFromOne)
{
    captions->append(u"id");
    captions->append(u"L'à 😀");
    EXPECT_EQ(all(), "'id''L'à 😀'");
    EXPECT_EQ(itemResult(number(0)), outOfRange);
    EXPECT_EQ(itemResult(number(3)), outOfRange);
    EXPECT_EQ(itemResult(number(-1)), outOfRange);
}

TEST_F(CaptionCollectionTest, PositionsComeInAnyNumberType)
{
    captions->append(u"a");
    captions->append(u"b");
    Variant small;
    small.vt = VT_I2;
    small.iVal = 2;
    EXPECT_EQ(item(small), "'b'");
    EXPECT_EQ(item(real(1.4)), "'a'");
    LONG two = 2;
    EXPECT_EQ(item(Variant::ref(&two)), "'b'");
    EXPECT_EQ(itemResult(null()), invalidCall);
}

TEST_F(CaptionCollectionTest, KeysAreComparedWithoutRegardToCase)
{
    EXPECT_EQ(add(text("uno"), text("Chiave")), S_OK);
    EXPECT_EQ(item(text("CHIAVE")), "'uno'");
    EXPECT_EQ(itemResult(text("altra")), invalidCall);
    EXPECT_EQ(add(text("due"), text("chiave")), duplicateKey);
    EXPECT_EQ(add(text("due"), number(3)), typeMismatch);
    EXPECT_EQ(all(), "'uno'");
}

TEST_F(CaptionCollectionTest, BeforeAndAfterTakeAPositionOrAKey)
{
    add(text("b"), text("kb"));
    EXPECT_EQ(add(text("a"), Variant::missing(), number(1)), S_OK);
    EXPECT_EQ(add(text("d"), Variant::missing(), Variant::missing(), text("kb")), S_OK);
    EXPECT_EQ(add(text("c"), Variant::missing(), number(3)), S_OK);
    EXPECT_EQ(all(), "'a''b''c''d'");
    EXPECT_EQ(add(text("x"), Variant::missing(), number(1), number(1)), invalidCall);
    EXPECT_EQ(add(text("x"), Variant::missing(), number(9)), outOfRange);
    EXPECT_EQ(add(text("x"), Variant::missing(), text("no")), invalidCall);
    EXPECT_EQ(all(), "'a''b''c''d'");
}

TEST_F(CaptionCollectionTest, RemovesByPositionAndByKey)
{
    add(text("a"));
    add(text("b"), text("kb"));
    add(text("c"));
    Variant key = text("KB");
    EXPECT_EQ(captions->Remove(&key), S_OK);
    Variant first = number(1);
    EXPECT_EQ(captions->Remove(&first), S_OK);
    EXPECT_EQ(all(), "'c'");
    EXPECT_EQ(captions->Remove(&key), invalidCall);
    Variant nine = number(9);
    EXPECT_EQ(captions->Remove(&nine), outOfRange);
    EXPECT_EQ(captions->Remove(nullptr), invalidCall);
}

TEST_F(CaptionCollectionTest, ItemsMayBeOfAnyTypeAndAreCopied)
{
    add(number(5));
    add(null());
    Bstr original(u"testo");
    add(Variant::ref(original.inOut()));
    original = Bstr(u"cambiato");
    EXPECT_EQ(all(), "5NULL'testo'");
    const ULONG before = (captions->AddRef(), captions->Release());
    add(Variant::fromDispatch(captions.get()));
    EXPECT_EQ((captions->AddRef(), captions->Release()), before + 1) << "an object is held";
    Variant four = number(4);
    EXPECT_EQ(captions->Remove(&four), S_OK);
    EXPECT_EQ((captions->AddRef(), captions->Release()), before);
}

TEST_F(CaptionCollectionTest, NullPointersAreRefused)
{
    Variant one = number(1);
    Variant value;
    EXPECT_EQ(captions->Item(&one, nullptr), E_POINTER);
    EXPECT_EQ(captions->Item(nullptr, &value), invalidCall);
    EXPECT_EQ(captions->Add(nullptr, nullptr, nullptr, nullptr), E_POINTER);
    EXPECT_EQ(captions->Count(nullptr), E_POINTER);
    EXPECT_EQ(captions->_NewEnum(nullptr), E_POINTER);
    Variant item = text("solo");
    EXPECT_EQ(captions->Add(&item, nullptr, nullptr, nullptr), S_OK) << "what may be left out may be null";
}

TEST_F(CaptionCollectionTest, EnumeratesWhatItHeldWhenItWasAsked)
{
    captions->append(u"a");
    captions->append(u"b");
    captions->append(u"c");
    ComPtr<IUnknown> unknown;
    ASSERT_EQ(captions->_NewEnum(unknown.put()), S_OK);
    const auto values = unknown.as<IEnumVARIANT>();
    ASSERT_TRUE(values);
    captions->append(u"d");
    std::array<Variant, 4> got;
    ULONG fetched = 9;
    EXPECT_EQ(values->Next(2, got.data(), &fetched), S_OK);
    EXPECT_EQ(fetched, 2U);
    EXPECT_EQ(show(got[1]), "'b'");
    ComPtr<IEnumVARIANT> copy;
    EXPECT_EQ(values->Clone(copy.put()), S_OK);
    EXPECT_EQ(values->Next(2, got.data() + 2, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
    EXPECT_EQ(show(got[2]), "'c'");
    Variant last;
    EXPECT_EQ(copy->Next(1, &last, nullptr), S_OK) << "the copy stood where it was made";
    EXPECT_EQ(show(last), "'c'");
    EXPECT_EQ(values->Reset(), S_OK);
    EXPECT_EQ(values->Skip(3), S_OK);
    EXPECT_EQ(values->Skip(1), S_FALSE);
    EXPECT_EQ(values->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(values->Clone(nullptr), E_POINTER);
}

TEST_F(CaptionCollectionTest, ACopyThatFailsIsTheCallersError)
{
    captions->append(u"a");
    captions->append(u"b");
    Variant one = number(1);
    VARIANT value{};
    copiesBeforeFailure = 2; // those of the index come first
    EXPECT_EQ(captions->Item(&one, &value), DISP_E_BADVARTYPE);
    EXPECT_EQ(value.vt, VT_EMPTY);

    copiesBeforeFailure = 1;
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(captions->_NewEnum(unknown.put()), DISP_E_BADVARTYPE);
    EXPECT_FALSE(unknown);

    copiesBeforeFailure = -1;
    ASSERT_EQ(captions->_NewEnum(unknown.put()), S_OK);
    const auto values = unknown.as<IEnumVARIANT>();
    std::array<Variant, 2> got;
    ULONG fetched = 9;
    copiesBeforeFailure = 1;
    EXPECT_EQ(values->Next(2, got.data(), &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
    EXPECT_EQ(show(got[0]), "'a'") << "what came before the failure";
    copiesBeforeFailure = 0;
    EXPECT_EQ(values->Next(1, &got[1], &fetched), DISP_E_BADVARTYPE);
    EXPECT_EQ(fetched, 0U);
    EXPECT_EQ(values->Next(1, &got[1], &fetched), S_OK) << "from where it stood";
    EXPECT_EQ(show(got[1]), "'b'");
}

TEST_F(CaptionCollectionTest, LateBoundItIsTheCollectionThatHostsKnow)
{
    captions->append(u"a");
    IDispatch* object = captions.get();
    EXPECT_EQ(idOf(object, "item"), 0);
    EXPECT_EQ(idOf(object, "Add"), 1);
    EXPECT_EQ(idOf(object, "COUNT"), 2);
    EXPECT_EQ(idOf(object, "Remove"), 3);
    EXPECT_EQ(idOf(object, "_NewEnum"), -4);
    const Variant b = text("b");
    EXPECT_EQ(call(object, "Add", {b}).result, S_OK);
    EXPECT_EQ(show(call(object, "Count").value), "2");
    const Variant two = number(2);
    EXPECT_EQ(show(invoke(object, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {two}).value), "'b'");
    const Variant nine = number(9);
    EXPECT_EQ(call(object, "Item", {nine}).result, DISP_E_EXCEPTION);
    EXPECT_EQ(call(object, "Item").result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(object, -4, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}).value.vt, VT_UNKNOWN);
}

} // namespace
} // namespace zul
