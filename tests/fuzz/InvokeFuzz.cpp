// The public object, late bound: any names, any member, any arguments. An answer is one of the documented ones, out-
// parameters are cleared before anything fails, arguments by reference keep what they held, nothing is lost.
#include "automation/ErrorInfo.h"
#include "component/SmsCreatorObject.h"
#include "component/modMain.h"
#include "session/CaptionCollection.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/StandInWindows.h"
#include "tests/fuzz/Values.h"
#include "tests/support/fake/DeadConnection.h"
#include "tests/support/fake/EarlyBound.h"

#include <QCoreApplication>
#include <array>
#include <vector>

using namespace zul;
using fuzz::Input;
using fuzz::require;

namespace {

constexpr std::array<const char16_t*, 24> names{
    u"idUtente",           u"InitWhatToShow",        u"InitWhatToSearch",     u"ShowForm",
    u"isOkPressed",        u"DiscardForm",           u"ShowOptions",          u"EventoGrd_CaricaGrd",
    u"DiscardOptionsForm", u"ShowCheckErrorSMSSend", u"GetOptionsFormChoice", u"GetFormChoice",
    u"showSendSms",        u"showSendMail",          u"showPushNotify",       u"searchBy_Ricorrenze",
    u"SqlConnection",      u"PathMainApplication",   u"ShowTouchMode",        u"grdCodejock",
    u"SqlString",          u"strPreFormatQta",       u"CaptionCollection",    u"searchBy_Classificazioni"};
constexpr std::size_t members = 12;
constexpr std::array<DISPID, 13> ids{0x68030000, 0x60030002, 0x60030003, 0x60030004, 0x60030005,
                                     0x60030006, 0x60030007, 0x60030008, 0x60030009, 0x6003000A,
                                     0x6003000B, 0x6003000C, 0};

/// Nobody asks anything of it here.
using Connection = test::DeadConnection<test::EarlyBound<_SqlConnection>>;

bool isDocumented(HRESULT result)
{
    constexpr std::array<HRESULT, 12> documented{S_OK,
                                                 E_POINTER,
                                                 E_INVALIDARG,
                                                 DISP_E_MEMBERNOTFOUND,
                                                 DISP_E_PARAMNOTFOUND,
                                                 DISP_E_TYPEMISMATCH,
                                                 DISP_E_OVERFLOW,
                                                 DISP_E_BADPARAMCOUNT,
                                                 DISP_E_BADVARTYPE,
                                                 DISP_E_UNKNOWNINTERFACE,
                                                 DISP_E_PARAMNOTOPTIONAL,
                                                 DISP_E_NONAMEDARGS};
    return std::find(documented.begin(), documented.end(), result) != documented.end();
}

class Caller
{
public:
    Caller(Input& input, fuzz::Values& values, IDispatch& object)
        : m_input(input)
        , m_values(values)
        , m_object(object)
    {}

    void getIds()
    {
        std::array<std::u16string, 4> texts;
        std::array<LPOLESTR, 4> pointers{};
        const UINT count = m_input.below(texts.size() + 1);
        bool known = count > 0;
        for (UINT i = 0; i < count; ++i) {
            const std::uint8_t choice = m_input.number<std::uint8_t>();
            if (choice == 0xFF) {
                known = false;
                continue; // a null pointer
            }
            if (choice >= 0xC0) {
                texts[i] = textOf(m_values.text());
                known = false;
            } else {
                texts[i] = names[choice % names.size()];
                known = known && (i > 0 || choice % names.size() < members);
                for (char16_t& c : texts[i]) {
                    const bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
                    c = static_cast<char16_t>(letter && m_input.flag() ? c ^ 0x20 : c);
                }
            }
            pointers[i] = texts[i].data();
        }
        std::array<DISPID, 4> found{7, 7, 7, 7};
        const bool plain = m_input.number<std::uint8_t>() < 0xF0;
        const HRESULT result = m_object.GetIDsOfNames(plain ? GUID_NULL : iidOf<IDispatch>(), pointers.data(),
                                                      count, 0, found.data());
        require(result == S_OK || result == DISP_E_UNKNOWNNAME || result == DISP_E_UNKNOWNINTERFACE ||
                    result == E_INVALIDARG,
                "a result of the documented set");
        const bool all =
            std::find(found.begin(), found.begin() + count, DISPID_UNKNOWN) == found.begin() + count;
        require(result != S_OK || all, "each name has its id");
        require(result != DISP_E_UNKNOWNNAME || !all, "an unknown name has none");
        require(!(known && plain && count == 1) || result == S_OK,
                "a member is known by its name in any case");
    }

    void invoke()
    {
        const std::uint8_t choice = m_input.number<std::uint8_t>();
        const DISPID id = choice < 0xF0 ? ids[choice % ids.size()] : m_input.number<DISPID>();
        const std::uint8_t kind = m_input.number<std::uint8_t>();
        const WORD flags =
            kind < 0xF0 ? static_cast<WORD>(1U << (kind % 4U)) : m_input.number<std::uint16_t>();
        std::vector<VARIANT> arguments = m_input.flag() ? fitting(id) : std::vector<VARIANT>();
        if (arguments.empty()) {
            for (std::uint32_t left = m_input.below(13); left > 0; --left) {
                arguments.push_back(argument());
            }
        } else if (m_input.number<std::uint8_t>() < 0x20) {
            arguments[m_input.below(static_cast<std::uint32_t>(arguments.size()))] = argument();
        }
        const auto count = static_cast<UINT>(arguments.size());
        std::vector<DISPID> named;
        const std::uint32_t namedCount = m_input.flag() ? 0 : m_input.below(4);
        for (std::uint32_t i = 0; i < namedCount; ++i) {
            named.push_back(m_input.flag() ? DISPID_PROPERTYPUT
                                           : static_cast<DISPID>(m_input.number<std::int8_t>()));
        }
        DISPPARAMS params{};
        params.rgvarg = arguments.empty() ? nullptr : arguments.data();
        params.rgdispidNamedArgs = named.empty() ? nullptr : named.data();
        params.cArgs = count;
        params.cNamedArgs = namedCount;

        const fuzz::Values::Snapshot before = m_values.snapshot();
        Variant result;
        result.vt = VT_I4; // what an out-parameter held is not looked at
        EXCEPINFO exception{};
        UINT argErr = 0xFFFF;
        const std::uint8_t left = m_input.number<std::uint8_t>();
        const HRESULT outcome =
            m_object.Invoke(id, (left & 0x78U) == 0x78U ? iidOf<IDispatch>() : GUID_NULL, 0, flags,
                            left == 0xFF ? nullptr : &params, (left & 1U) != 0 ? nullptr : &result,
                            (left & 2U) != 0 ? nullptr : &exception, (left & 4U) != 0 ? nullptr : &argErr);
        require(isDocumented(outcome), "a result of the documented set");
        require(SUCCEEDED(outcome) || (left & 1U) != 0 || result.isEmpty(),
                "a failure leaves the result empty");
        require((left & 4U) != 0 || argErr <= count, "the index of an argument");
        require(m_values.holds(before), "arguments by reference keep what they held");
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
    }

    void property()
    {
        const LONG value = m_input.number<LONG>();
        Variant argument = Variant::fromLong(value);
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS params{&argument, &put, 1, 1};
        require(m_object.Invoke(ids[0], GUID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr,
                                nullptr) == S_OK,
                "the user's id is taken");
        DISPPARAMS none{};
        Variant result;
        require(m_object.Invoke(ids[0], GUID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result, nullptr,
                                nullptr) == S_OK &&
                    result.vt == VT_I4 && result.lVal == value,
                "and given back");
    }

private:
    /// Arguments of the types that a member has, the last one first; none for a member without, or with others.
    std::vector<VARIANT> fitting(DISPID id)
    {
        std::vector<VARTYPE> types;
        switch (id) {
        case ids[1]:
            types = {VT_BOOL, VT_BOOL, VT_BOOL};
            break;
        case ids[2]:
            types = {VT_BOOL, VT_BOOL};
            break;
        case ids[3]:
        case ids[7]:
            types = {VT_BOOL, VT_BSTR, VT_DISPATCH};
            break;
        case ids[6]:
            types.assign(9, VT_BSTR);
            types.insert(types.begin(), VT_DISPATCH);
            types.push_back(VT_DISPATCH);
            break;
        case ids[8]:
            types = {VT_BOOL, VT_DISPATCH};
            break;
        default:
            break;
        }
        std::vector<VARIANT> arguments;
        for (const VARTYPE type : types) {
            if (type != VT_DISPATCH) {
                arguments.push_back(m_values.reference(type));
            } else if (arguments.empty()) {
                // The captions of the event: a collection, or none.
                Variant captions;
                captions.vt = VT_DISPATCH;
                captions.pdispVal = m_input.flag() ? makeCom<CaptionCollection>().detach() : nullptr;
                arguments.push_back(m_values.keep(std::move(captions), m_input.flag()));
            } else {
                arguments.push_back(
                    m_values.keep(Variant::fromDispatch(makeCom<Connection>().get()), m_input.flag()));
            }
        }
        return arguments;
    }

    /// Owned by the values; a connection object and the types of the members stand among them more often than by chance.
    VARIANT argument()
    {
        switch (m_input.below(6)) {
        case 0:
            return m_values.reference(VT_BOOL);
        case 1:
            return m_values.reference(VT_BSTR);
        case 2:
            return m_values.keep(Variant::fromDispatch(makeCom<Connection>().get()), m_input.flag());
        case 3:
            return m_values.keep(Variant::fromBool(m_input.flag()), m_input.flag());
        default:
            return *m_values.variant();
        }
    }

    Input& m_input;
    fuzz::Values& m_values;
    IDispatch& m_object;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static std::array<char, 5> program{"fuzz"};
    static std::array<char*, 2> argv{program.data(), nullptr};
    static const QCoreApplication application(argc, argv.data());
    static const bool prepared = [] {
        fuzz::withoutLog();
        return true;
    }();
    require(prepared, "no log");
    const auto references = moduleReferences();
    Input input(data, size);
    {
        fuzz::Values values(input);
        fuzz::windows().choice = QStringLiteral("OK");
        const auto object = makeCom<SmsCreatorObject>();
        // A window that calls back while it is shown: a second call on the way of the first.
        int depth = 0;
        fuzz::windows().shown = [&](ComponentObject*) {
            constexpr int deepest = 3;
            if (depth < deepest && !input.ended()) {
                ++depth;
                Caller(input, values, *static_cast<_SmsCreator*>(object.get())).invoke();
                --depth;
            }
        };
        Caller caller(input, values, *static_cast<_SmsCreator*>(object.get()));
        for (int step = 0; step < 50 && !input.ended(); ++step) {
            switch (input.below(8)) {
            case 0:
                caller.getIds();
                break;
            case 1:
                caller.property();
                break;
            default:
                caller.invoke();
                break;
            }
        }
        fuzz::windows().shown = nullptr;
        setConnessione(nullptr);
    }
    SetErrorInfo(0, nullptr);
    require(fuzz::Values::objectsAlive() == 0, "every reference is given back");
    require(moduleReferences() == references, "every object is gone");
    return 0;
}
