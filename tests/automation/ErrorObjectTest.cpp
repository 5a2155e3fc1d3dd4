// What our runtime says to arguments that the system's takes in its own way.
#include "automation/ComPtr.h"

#include <gtest/gtest.h>
#include <oleauto.h>

TEST(ErrorObject, RefusesNullAndReservedArguments)
{
    EXPECT_EQ(GetErrorInfo(0, nullptr), E_POINTER);
    EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
    EXPECT_EQ(CreateErrorInfo(nullptr), E_POINTER);
    zul::ComPtr<IErrorInfo> info;
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(GetErrorInfo(0, info.put()), S_FALSE);
}
