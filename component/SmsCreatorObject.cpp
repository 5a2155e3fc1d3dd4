#include "component/SmsCreatorObject.h"

#include "component/ClassInfo.h"
#include "component/modMain.h"
#include "hostlib/Calls.h"
#include "session/CaptionCollection.h"
#include "session/FormChoice.h"
#include "session/GridObject.h"
#include "session/Registry.h"
#include "session/Session.h"
#include "session/modLogger.h"

#include <array>

namespace zul {

using namespace calls;
using namespace Qt::StringLiterals;

namespace {

constexpr DISPID EventCaricaGriglia = 1;

Procedure procedure(const QString& name)
{
    return classProcedure(u"SmsCreator"_s, name);
}

/// Two members report under the name of the class that they were once copied from; hosts' log readers know
/// them by it.
Procedure inheritedProcedure(const QString& name)
{
    return classProcedure(u"ImportTabacchi"_s, name);
}

bool isTrue(const VARIANT_BOOL* argument)
{
    return argument != nullptr && *argument != VARIANT_FALSE;
}

QString textOfArgument(const BSTR* argument)
{
    return argument != nullptr ? toQString(textOf(*argument)) : QString();
}

/// A Variant result is always Empty.
void clear(VARIANT* result)
{
    if (result != nullptr) {
        VariantInit(result);
    }
}

/// A member without a trap of its own: what its procedures trapped is in the log already.
template <class Body>
HRESULT untrapped(Body&& body) noexcept
{
    return comGuard(u"Zul_MessageBuilder.SmsCreator", std::forward<Body>(body));
}

} // namespace

SmsCreatorObject::SmsCreatorObject()
    : m_events(addConnectionPoint(DIID___SmsCreator))
{}

HRESULT SmsCreatorObject::QueryInterface(REFIID riid, void** object)
{
    const HRESULT answer = ComObject::QueryInterface(riid, object);
    return answer == E_NOINTERFACE ? provideClassInfo(*static_cast<_SmsCreator*>(this), riid, object)
                                   : answer;
}

HRESULT SmsCreatorObject::put_idUtente(LONG idUtente)
{
    m_idUtente = idUtente;
    return S_OK;
}

HRESULT SmsCreatorObject::get_idUtente(LONG* idUtente)
{
    if (idUtente == nullptr) {
        return E_POINTER;
    }
    *idUtente = m_idUtente;
    return S_OK;
}

qint32 SmsCreatorObject::idUtente() const
{
    return m_idUtente;
}

HRESULT SmsCreatorObject::InitWhatToShow(VARIANT_BOOL* showSendSms, VARIANT_BOOL* showSendMail,
                                         VARIANT_BOOL* showPushNotify, VARIANT* result)
{
    clear(result);
    if (showSendSms == nullptr || showSendMail == nullptr || showPushNotify == nullptr || result == nullptr) {
        return E_POINTER;
    }
    SetWhatToShow(isTrue(showSendSms), isTrue(showSendMail), isTrue(showPushNotify));
    return S_OK;
}

HRESULT SmsCreatorObject::InitWhatToSearch(VARIANT_BOOL* searchBy_Ricorrenze,
                                           VARIANT_BOOL* searchBy_Classificazioni, VARIANT* result)
{
    clear(result);
    if (searchBy_Ricorrenze == nullptr || searchBy_Classificazioni == nullptr || result == nullptr) {
        return E_POINTER;
    }
    SetWhatToSearch(isTrue(searchBy_Ricorrenze), isTrue(searchBy_Classificazioni));
    return S_OK;
}

HRESULT SmsCreatorObject::ShowForm(_SqlConnection** SqlConnection, BSTR* PathMainApplication,
                                   VARIANT_BOOL* ShowTouchMode, VARIANT* result)
{
    clear(result);
    if (SqlConnection == nullptr || PathMainApplication == nullptr || ShowTouchMode == nullptr ||
        result == nullptr) {
        return E_POINTER;
    }
    // The window refers to this object while it is shown, also when the host lets go of it meanwhile.
    const ComPtr<IUnknown> alive(static_cast<_SmsCreator*>(this));
    // The session takes connection and folders first, whatever becomes of the showing: a call that comes while
    // the window is on the screen is refused only behind that.
    trapped(inheritedProcedure(u"ShowForm"_s), [&] {
        setConnessione(*SqlConnection);
        session().PathMainApplication = textOfArgument(PathMainApplication);
        session().PathCartellaSMSSender =
            readRegistry(QString::fromLatin1(RegistryKey), QString::fromLatin1(RegistrySection),
                         QString::fromLatin1(RegistryPathCartellaSMSSender), u""_s);
        prepareForm(this);
        funShowForm(isTrue(ShowTouchMode));
    });
    return S_OK;
}

HRESULT SmsCreatorObject::isOkPressed(VARIANT_BOOL* result)
{
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = toBool(trapped(inheritedProcedure(u"isOkPressed"_s), false,
                             [&] { return formChoice(funGetFormChoice()) == FormChoice::Confirmed; }));
    return S_OK;
}

HRESULT SmsCreatorObject::DiscardForm(VARIANT* result)
{
    clear(result);
    if (result == nullptr) {
        return E_POINTER;
    }
    funDiscardForm();
    return S_OK;
}

HRESULT SmsCreatorObject::EventoGrd_CaricaGrd(IDispatch** grdCodejock, BSTR* SqlString, BSTR* strVisibility,
                                              BSTR* strIconIndex, BSTR* strEditMask, BSTR* strSizable,
                                              BSTR* strButtonType, BSTR* strPreFormat, BSTR* strPreFormatQta,
                                              BSTR* strPreFormatColore, _Collection** CaptionCollection)
{
    const std::array<BSTR*, 9> texts{SqlString,    strVisibility,   strIconIndex,
                                     strEditMask,  strSizable,      strButtonType,
                                     strPreFormat, strPreFormatQta, strPreFormatColore};
    if (grdCodejock == nullptr || CaptionCollection == nullptr) {
        return E_POINTER;
    }
    for (const BSTR* text : texts) {
        if (text == nullptr) {
            return E_POINTER;
        }
    }
    const ComPtr<IUnknown> alive(static_cast<_SmsCreator*>(this));
    trapped(procedure(u"EventoGrd_CaricaGrd"_s), [&] {
        std::vector<Variant> arguments;
        arguments.push_back(Variant::ref(grdCodejock));
        for (BSTR* text : texts) {
            arguments.push_back(Variant::ref(text));
        }
        // A sink takes any object where an object goes; the collection is one.
        arguments.push_back(Variant::ref(reinterpret_cast<IDispatch**>(CaptionCollection)));
        m_events->fire(EventCaricaGriglia, arguments, [](DWORD, const ErrorDetails& details) {
            report(procedure(u"EventoGrd_CaricaGrd"_s), Error(details.code, toQString(details.description)));
        });
    });
    return S_OK;
}

void SmsCreatorObject::EventoGrd_CaricaGrd(ReportGrid& grid, const GridRequest& request)
{
    const ComPtr<GridObject> gridObject = makeCom<GridObject>(grid);
    const ComPtr<CaptionCollection> captions = makeCom<zul::CaptionCollection>();
    for (const QString& caption : request.captions) {
        captions->append(
            {reinterpret_cast<const char16_t*>(caption.utf16()), static_cast<std::size_t>(caption.size())});
    }

    // Passed by reference: what a sink puts in their place is freed here.
    ComPtr<IDispatch> gridPlace(gridObject.get());
    ComPtr<_Collection> captionsPlace(captions.get());
    IDispatch* gridReference = gridPlace.detach();
    _Collection* captionsReference = captionsPlace.detach();
    Bstr sql = bstr(request.sql);
    Bstr visibility = bstr(request.visibility);
    Bstr iconIndex = bstr(request.iconIndex);
    Bstr editMask = bstr(request.editMask);
    Bstr sizable = bstr(request.sizable);
    Bstr buttonType = bstr(request.buttonType);
    Bstr preFormat = bstr(request.preFormat);
    Bstr preFormatQta = bstr(request.preFormatQta);
    Bstr preFormatColore = bstr(request.preFormatColore);
    EventoGrd_CaricaGrd(&gridReference, sql.inOut(), visibility.inOut(), iconIndex.inOut(), editMask.inOut(),
                        sizable.inOut(), buttonType.inOut(), preFormat.inOut(), preFormatQta.inOut(),
                        preFormatColore.inOut(), &captionsReference);
    gridPlace = ComPtr<IDispatch>::adopt(gridReference);
    captionsPlace = ComPtr<_Collection>::adopt(captionsReference);
}

HRESULT SmsCreatorObject::ShowOptions(_SqlConnection** SqlConnection, BSTR* PathMainApplication,
                                      VARIANT_BOOL* ShowTouchMode, VARIANT_BOOL* result)
{
    if (result != nullptr) {
        *result = VARIANT_FALSE;
    }
    if (SqlConnection == nullptr || PathMainApplication == nullptr || ShowTouchMode == nullptr ||
        result == nullptr) {
        return E_POINTER;
    }
    const ComPtr<IUnknown> alive(static_cast<_SmsCreator*>(this));
    *result = toBool(trapped(procedure(u"ShowOptions"_s), false, [&] {
        setConnessione(*SqlConnection);
        session().PathMainApplication = textOfArgument(PathMainApplication);
        return funShowOptionsForm(isTrue(ShowTouchMode));
    }));
    return S_OK;
}

HRESULT SmsCreatorObject::ShowCheckErrorSMSSend(_SqlConnection** SqlConnection, VARIANT_BOOL* ShowTouchMode,
                                                VARIANT_BOOL* result)
{
    // The result is false also when the check ran to its end: the method reports nothing through it.
    if (result != nullptr) {
        *result = VARIANT_FALSE;
    }
    if (SqlConnection == nullptr || ShowTouchMode == nullptr || result == nullptr) {
        return E_POINTER;
    }
    const ComPtr<IUnknown> alive(static_cast<_SmsCreator*>(this));
    // Reports under the name of ShowOptions, as it always did.
    trapped(procedure(u"ShowOptions"_s), [&] {
        setConnessione(*SqlConnection);
        showCheckSendError();
    });
    return S_OK;
}

HRESULT SmsCreatorObject::DiscardOptionsForm(VARIANT* result)
{
    clear(result);
    if (result == nullptr) {
        return E_POINTER;
    }
    funDiscardOptionsForm();
    return S_OK;
}

HRESULT SmsCreatorObject::GetOptionsFormChoice(BSTR* result)
{
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    return untrapped([&] { *result = bstr(funGetOptionsFormChoice()).detach(); });
}

HRESULT SmsCreatorObject::GetFormChoice(BSTR* result)
{
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    return untrapped([&] { *result = bstr(funGetFormChoice()).detach(); });
}

const DispTable<_SmsCreator>& SmsCreatorObject::dispTable() const
{
    using namespace dispatch;
    static const DispTable<_SmsCreator> table{
        propput("idUtente", 0x68030000, &_SmsCreator::put_idUtente, {"idUtente"}),
        propget("idUtente", 0x68030000, &_SmsCreator::get_idUtente),
        method("InitWhatToShow", 0x60030002, &_SmsCreator::InitWhatToShow,
               {"showSendSms", "showSendMail", "showPushNotify"}),
        method("InitWhatToSearch", 0x60030003, &_SmsCreator::InitWhatToSearch,
               {"searchBy_Ricorrenze", "searchBy_Classificazioni"}),
        method("ShowForm", 0x60030004, &_SmsCreator::ShowForm,
               {"SqlConnection", "PathMainApplication", "ShowTouchMode"}),
        method("isOkPressed", 0x60030005, &_SmsCreator::isOkPressed),
        method("DiscardForm", 0x60030006, &_SmsCreator::DiscardForm),
        method("EventoGrd_CaricaGrd", 0x60030007, &_SmsCreator::EventoGrd_CaricaGrd,
               {"grdCodejock", "SqlString", "strVisibility", "strIconIndex", "strEditMask", "strSizable",
                "strButtonType", "strPreFormat", "strPreFormatQta", "strPreFormatColore",
                "CaptionCollection"}),
        method("ShowOptions", 0x60030008, &_SmsCreator::ShowOptions,
               {"SqlConnection", "PathMainApplication", "ShowTouchMode"}),
        method("ShowCheckErrorSMSSend", 0x60030009, &_SmsCreator::ShowCheckErrorSMSSend,
               {"SqlConnection", "ShowTouchMode"}),
        method("DiscardOptionsForm", 0x6003000A, &_SmsCreator::DiscardOptionsForm),
        method("GetOptionsFormChoice", 0x6003000B, &_SmsCreator::GetOptionsFormChoice),
        method("GetFormChoice", 0x6003000C, &_SmsCreator::GetFormChoice),
    };
    return table;
}

} // namespace zul
