// Variants of every type out of an input, with the storage that they refer to: what a late-bound caller may bring.
#pragma once

#include "automation/ComObject.h"
#include "automation/Variant.h"
#include "tests/fuzz/Input.h"

#include <deque>
#include <string>
#include <vector>

namespace zul::fuzz {

/// Makes values that live as long as it does. Pointers are good ones or null: what a caller points to is his promise.
class Values
{
public:
    explicit Values(Input& input)
        : m_input(input)
    {}
    ~Values();
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;

    /// A type, known or not, plain for the most part.
    VARTYPE type();
    /// A value of a type that it chooses. Owned here.
    VARIANT* variant(int depth = 0);
    /// A text of any bytes, of an odd number of them now and then; null sometimes. Owned here.
    BSTR text();
    /// A reference of a plain type to storage that is kept here.
    VARIANT reference(VARTYPE type);
    /// Keeps a value. @return it, or a reference to it as VT_BYREF and its type
    VARIANT keep(Variant value, bool byReference);
    /// An object that answers to IDispatch or to IUnknown alone, or null. Owned here.
    IUnknown* object();

    /// All values and what they refer to, bit by bit; texts with their characters.
    struct Snapshot
    {
        std::vector<std::string> values;
        std::vector<std::string> places;
    };
    Snapshot snapshot() const;
    /// Whether what was there then is there still; more may have come.
    bool holds(const Snapshot& before) const;

    /// The objects that were made and not destroyed, in the whole process.
    static long objectsAlive();

private:
    Input& m_input;
    std::deque<VARIANT> m_variants;
    std::deque<VARIANT> m_places; ///< behind references; each has the size of the largest value
};

} // namespace zul::fuzz
