#pragma once
// Functions of numbers.

#include "host/dialect/functions/Value.h"

#include <span>

namespace zul::dialect {

std::span<const Function> numberFunctions();

/// The average of the server: of whole numbers it is a whole number. NULLs do not count; of nothing it is NULL.
class Average
{
public:
    void add(const Argument& value);
    Result result() const;

private:
    std::int64_t m_count = 0;
    std::int64_t m_reals = 0;
    std::int64_t m_whole = 0;
    double m_real = 0;
};

} // namespace zul::dialect
