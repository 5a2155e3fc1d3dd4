// The fixture of tests on the public class.
#pragma once

#include "component/SmsCreatorObject.h"
#include "component/modMain.h"
#include "hostlib/Calls.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/LateBound.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QWidget>

namespace zul::test {

class SmsCreatorTest : public ComponentTest
{
protected:
    SmsCreatorTest()
    {
        // What an earlier test left open is gone.
        session().isFormLoaded = true;
        funDiscardForm();
        funDiscardOptionsForm();
        host.forgetOperations();
    }

    ~SmsCreatorTest() override
    {
        session().isFormLoaded = true;
        funDiscardForm();
        funDiscardOptionsForm();
    }

    HRESULT showForm(const char16_t* path = u"C:\\Host", bool touch = false, VARIANT* result = nullptr)
    {
        VARIANT own{};
        _SqlConnection* connectionObject = hostConnection.get();
        Bstr pathText{std::u16string_view(path)};
        VARIANT_BOOL touchMode = touch ? VARIANT_TRUE : VARIANT_FALSE;
        return creator->ShowForm(&connectionObject, pathText.inOut(), &touchMode,
                                 result != nullptr ? result : &own);
    }

    bool showOptions(const char16_t* path = u"C:\\Host")
    {
        _SqlConnection* connectionObject = hostConnection.get();
        Bstr pathText{std::u16string_view(path)};
        VARIANT_BOOL touchMode = VARIANT_FALSE;
        VARIANT_BOOL shown = VARIANT_FALSE;
        EXPECT_EQ(creator->ShowOptions(&connectionObject, pathText.inOut(), &touchMode, &shown), S_OK);
        return shown != VARIANT_FALSE;
    }

    HRESULT showCheck()
    {
        _SqlConnection* connectionObject = hostConnection.get();
        VARIANT_BOOL touchMode = VARIANT_FALSE;
        VARIANT_BOOL result = VARIANT_TRUE;
        const HRESULT called = creator->ShowCheckErrorSMSSend(&connectionObject, &touchMode, &result);
        EXPECT_EQ(result, VARIANT_FALSE);
        return called;
    }

    void whatToShow(bool sms, bool mail, bool push)
    {
        VARIANT_BOOL smsFlag = sms ? VARIANT_TRUE : VARIANT_FALSE;
        VARIANT_BOOL mailFlag = mail ? VARIANT_TRUE : VARIANT_FALSE;
        VARIANT_BOOL pushFlag = push ? VARIANT_TRUE : VARIANT_FALSE;
        VARIANT result{};
        EXPECT_EQ(creator->InitWhatToShow(&smsFlag, &mailFlag, &pushFlag, &result), S_OK);
    }

    QString formChoice()
    {
        Bstr choice;
        EXPECT_EQ(creator->GetFormChoice(choice.put()), S_OK);
        return calls::toQString(choice.view());
    }

    QString optionsChoice()
    {
        Bstr choice;
        EXPECT_EQ(creator->GetOptionsFormChoice(choice.put()), S_OK);
        return calls::toQString(choice.view());
    }

    bool isOkPressed()
    {
        VARIANT_BOOL pressed = VARIANT_TRUE;
        EXPECT_EQ(creator->isOkPressed(&pressed), S_OK);
        return pressed != VARIANT_FALSE;
    }

    void discardForm()
    {
        VARIANT result{};
        EXPECT_EQ(creator->DiscardForm(&result), S_OK);
        EXPECT_EQ(result.vt, VT_EMPTY);
    }

    void discardOptions()
    {
        VARIANT result{};
        EXPECT_EQ(creator->DiscardOptionsForm(&result), S_OK);
        EXPECT_EQ(result.vt, VT_EMPTY);
    }

    static QWidget* topLevel(const char* name)
    {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (QWidget* widget : widgets) {
            if (widget->objectName() == QLatin1String(name)) {
                return widget;
            }
        }
        return nullptr;
    }

    DWORD advise(const ComPtr<Sink>& sink)
    {
        ComPtr<IConnectionPoint> point;
        EXPECT_EQ(
            creator.as<IConnectionPointContainer>()->FindConnectionPoint(DIID___SmsCreator, point.put()),
            S_OK);
        DWORD cookie = 0;
        EXPECT_EQ(point->Advise(sink.get(), &cookie), S_OK);
        return cookie;
    }

    void unadvise(DWORD cookie)
    {
        ComPtr<IConnectionPoint> point;
        EXPECT_EQ(
            creator.as<IConnectionPointContainer>()->FindConnectionPoint(DIID___SmsCreator, point.put()),
            S_OK);
        EXPECT_EQ(point->Unadvise(cookie), S_OK);
    }

    ComPtr<_SqlConnection> hostConnection = host.connection();
    ComPtr<SmsCreatorObject> creator = makeCom<SmsCreatorObject>();
};

} // namespace zul::test
