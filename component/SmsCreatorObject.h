// The public class SmsCreator: every member stores its arguments in the session or forwards to modMain.
#pragma once

#include "automation/ComObject.h"
#include "automation/ConnectionPoints.h"
#include "automation/Dispatch.h"
#include "session/ComponentObject.h"

#include <Zul_MessageBuilder.h>

namespace zul {

/// Its one field is the user id; all else is the session's, which two objects of one process share. Every
/// member runs on the host's user-interface thread. Errors are logged and never reach the host, but for a
/// null pointer where one is needed (E_POINTER).
class SmsCreatorObject final : public ComObject<Dispatching<_SmsCreator>, ConnectionPointContainer>,
                               public ComponentObject
{
public:
    SmsCreatorObject();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;

    HRESULT STDMETHODCALLTYPE put_idUtente(LONG idUtente) override;
    HRESULT STDMETHODCALLTYPE get_idUtente(LONG* idUtente) override;
    HRESULT STDMETHODCALLTYPE InitWhatToShow(VARIANT_BOOL* showSendSms, VARIANT_BOOL* showSendMail,
                                             VARIANT_BOOL* showPushNotify, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE InitWhatToSearch(VARIANT_BOOL* searchBy_Ricorrenze,
                                               VARIANT_BOOL* searchBy_Classificazioni,
                                               VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ShowForm(_SqlConnection** SqlConnection, BSTR* PathMainApplication,
                                       VARIANT_BOOL* ShowTouchMode, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE isOkPressed(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE DiscardForm(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE EventoGrd_CaricaGrd(IDispatch** grdCodejock, BSTR* SqlString,
                                                  BSTR* strVisibility, BSTR* strIconIndex, BSTR* strEditMask,
                                                  BSTR* strSizable, BSTR* strButtonType, BSTR* strPreFormat,
                                                  BSTR* strPreFormatQta, BSTR* strPreFormatColore,
                                                  _Collection** CaptionCollection) override;
    HRESULT STDMETHODCALLTYPE ShowOptions(_SqlConnection** SqlConnection, BSTR* PathMainApplication,
                                          VARIANT_BOOL* ShowTouchMode, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ShowCheckErrorSMSSend(_SqlConnection** SqlConnection,
                                                    VARIANT_BOOL* ShowTouchMode,
                                                    VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE DiscardOptionsForm(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetOptionsFormChoice(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetFormChoice(BSTR* result) override;

    // For the forms.
    qint32 idUtente() const override;
    void EventoGrd_CaricaGrd(ReportGrid& grid, const GridRequest& request) override;

private:
    const DispTable<_SmsCreator>& dispTable() const override;

    LONG m_idUtente = 0;
    ComPtr<ConnectionPoint> m_events;
};

} // namespace zul
