// Days of the proleptic Gregorian calendar, counted from 1899-12-30.
#pragma once

namespace zul::runtime {

constexpr double lowestDate = -657434.0;        // 0100-01-01
constexpr double beyondHighestDate = 2958466.0; // 10000-01-01

struct Day
{
    long year;
    long month;
    long day;
};

long dayNumber(const Day& day) noexcept;
Day dayOf(long number) noexcept;
// A day that there is, from 0100-01-01 to 9999-12-31.
bool isDay(const Day& day) noexcept;

} // namespace zul::runtime
