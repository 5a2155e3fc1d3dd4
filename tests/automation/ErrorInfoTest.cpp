#include <gtest/gtest.h>

#include <thread>

#include "automation/Bstr.h"
#include "automation/ComPtr.h"
#include "automation/ErrorInfo.h"

using zul::Bstr;
using zul::ComError;
using zul::comGuard;
using zul::ErrorDetails;
using zul::reportError;
using zul::takeErrorDetails;

TEST(ErrorInfo, IsTakenAwayByTheFirstReader)
{
    EXPECT_EQ(reportError(E_FAIL, u"Tabella 'tabClienti' è vuota", u"Zul_SQL"), E_FAIL);
    const ErrorDetails first = takeErrorDetails(E_FAIL);
    EXPECT_EQ(first.code, E_FAIL);
    EXPECT_EQ(first.description, u"Tabella 'tabClienti' è vuota");
    EXPECT_EQ(first.source, u"Zul_SQL");
    EXPECT_EQ(takeErrorDetails(E_FAIL).description, u"Unspecified error (0x80004005)");
}

TEST(ErrorInfo, BelongsToItsThread)
{
    reportError(E_FAIL, u"mine");
    std::thread([] {
        EXPECT_EQ(takeErrorDetails(DISP_E_OVERFLOW).description, u"Out of present range (0x8002000A)");
    }).join();
    EXPECT_EQ(takeErrorDetails(E_FAIL).description, u"mine");
}

TEST(ErrorInfo, TurnsExceptionsIntoResultsAndBack)
{
    EXPECT_EQ(comGuard(u"Here", [] { throw ComError(DISP_E_TYPEMISMATCH, u"è un testo"); }),
              DISP_E_TYPEMISMATCH);
    try {
        zul::throwIfFailed(DISP_E_TYPEMISMATCH);
        FAIL();
    } catch (const ComError& error) {
        EXPECT_EQ(error.code(), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(error.details().source, u"Here");
        EXPECT_STREQ(error.what(), "è un testo");
    }
    EXPECT_EQ(comGuard(u"Here", [] { throw std::runtime_error("plain"); }), E_FAIL);
    EXPECT_EQ(takeErrorDetails(E_FAIL).description, u"plain");
    EXPECT_EQ(comGuard(u"Here", [] { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(comGuard(u"Here", [] { throw 1; }), E_UNEXPECTED);
    EXPECT_EQ(comGuard(u"Here", [] {}), S_OK);
    EXPECT_EQ(comGuard(u"Here", [] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(zul::throwIfFailed(S_FALSE), S_FALSE);
    SetErrorInfo(0, nullptr);
}

TEST(ErrorInfo, AnExceptionWithASuccessCodeIsStillAFailure)
{
    EXPECT_EQ(comGuard(u"Here", [] { throw ComError(S_OK, u"odd"); }), E_FAIL);
    SetErrorInfo(0, nullptr);
}

namespace {

HRESULT STDMETHODCALLTYPE fillIn(EXCEPINFO* exception)
{
    exception->bstrDescription = Bstr(u"filled in late").detach();
    exception->wCode = 1004;
    return S_OK;
}

} // namespace

TEST(ErrorInfo, ReadsAndFreesWhatAnInvokeLeft)
{
    EXCEPINFO exception{};
    exception.scode = E_ACCESSDENIED;
    exception.bstrDescription = Bstr(u"vietato").detach();
    exception.bstrSource = Bstr(u"host").detach();
    exception.bstrHelpFile = Bstr(u"help").detach();
    const ErrorDetails details = takeErrorDetails(DISP_E_EXCEPTION, exception);
    EXPECT_EQ(details.code, E_ACCESSDENIED);
    EXPECT_EQ(details.description, u"vietato");
    EXPECT_EQ(details.source, u"host");
    EXPECT_EQ(exception.bstrDescription, nullptr);

    exception.pfnDeferredFillIn = fillIn;
    const ErrorDetails late = takeErrorDetails(DISP_E_EXCEPTION, exception);
    EXPECT_EQ(late.description, u"filled in late");
    EXPECT_EQ(late.code, static_cast<HRESULT>(0x800A03EC));

    EXCEPINFO none{};
    EXPECT_EQ(takeErrorDetails(DISP_E_BADPARAMCOUNT, none).description,
              u"Invalid number of parameters (0x8002000E)");
}
