#include "component/ServerRegistration.h"

#include "automation/ComPtr.h"
#include "automation/ErrorInfo.h"
#include "automation/ModuleHandle.h"
#include "automation/Uuid.h"

#include <Zul_MessageBuilder.h>
#include <oleauto.h>
#include <olectl.h>

#include <vector>

namespace zul {

namespace {

constexpr const wchar_t* ProgId = L"Zul_MessageBuilder.SmsCreator";
constexpr const wchar_t* VersionedProgId = L"Zul_MessageBuilder.SmsCreator.1";
constexpr const wchar_t* Description = L"Zul_MessageBuilder SmsCreator";
constexpr const wchar_t* Version = L"1.0";
// The system's own: it makes proxies for automation interfaces out of their type library.
constexpr const wchar_t* AutomationMarshaller = L"{00020424-0000-0000-C000-000000000046}";
constexpr const wchar_t* DispatchMarshaller = L"{00020420-0000-0000-C000-000000000046}";
constexpr int TypeLibraries = 4;
constexpr const wchar_t* Platform = sizeof(void*) == 8 ? L"win64" : L"win32";

struct Described
{
    std::wstring name;
    GUID id;
    bool dispatchOnly = false;
};

/// A type library among the library's resources, and its interfaces.
struct TypeLibrary
{
    std::wstring path; // "…\Zul_MessageBuilder.dll\2"
    std::wstring id;
    std::wstring name;
    std::wstring version; // as registry keys have it: "1.0", in hexadecimal digits
    LCID locale = 0;
    WORD flags = 0;
    std::vector<Described> interfaces;
};

std::wstring takeText(BSTR text)
{
    std::wstring result = text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text));
    SysFreeString(text);
    return result;
}

std::wstring hexText(unsigned number)
{
    wchar_t text[16] = L"";
    swprintf(text, 16, L"%x", number);
    return text;
}

TypeLibrary readTypeLibrary(int resource)
{
    TypeLibrary result;
    result.path = moduleFile();
    if (resource > 1) {
        result.path += L"\\" + std::to_wstring(resource);
    }
    ComPtr<ITypeLib> library;
    if (FAILED(LoadTypeLibEx(result.path.c_str(), REGKIND_NONE, library.put()))) {
        throw ComError(SELFREG_E_TYPELIB, u"The library carries no type library");
    }
    TLIBATTR* attributes = nullptr;
    throwIfFailed(library->GetLibAttr(&attributes));
    result.id = guidText(attributes->guid);
    result.version = hexText(attributes->wMajorVerNum) + L"." + hexText(attributes->wMinorVerNum);
    result.locale = attributes->lcid;
    result.flags = attributes->wLibFlags;
    library->ReleaseTLibAttr(attributes);
    BSTR name = nullptr;
    BSTR help = nullptr;
    throwIfFailed(library->GetDocumentation(-1, &name, &help, nullptr, nullptr));
    result.name = takeText(name);
    if (const std::wstring described = takeText(help); !described.empty()) {
        result.name = described;
    }

    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* type = nullptr;
        if (FAILED(library->GetTypeInfo(i, info.put())) || FAILED(info->GetTypeAttr(&type))) {
            continue;
        }
        const bool dual = (type->wTypeFlags & TYPEFLAG_FDUAL) != 0;
        const bool automation = (type->wTypeFlags & TYPEFLAG_FOLEAUTOMATION) != 0;
        if (type->typekind == TKIND_DISPATCH || (type->typekind == TKIND_INTERFACE && automation)) {
            BSTR interfaceName = nullptr;
            info->GetDocumentation(MEMBERID_NIL, &interfaceName, nullptr, nullptr, nullptr);
            result.interfaces.push_back(
                {takeText(interfaceName), type->guid, type->typekind == TKIND_DISPATCH && !dual});
        }
        info->ReleaseTypeAttr(type);
    }
    return result;
}

std::wstring libraryKey(const TypeLibrary& library)
{
    return L"TypeLib\\" + library.id;
}

/// Under the library's own locale, and under the neutral one, where the marshaller of some systems looks and no further.
std::vector<std::wstring> localeKeys(const TypeLibrary& library)
{
    const std::wstring version = libraryKey(library) + L"\\" + library.version + L"\\";
    std::vector<std::wstring> keys = {version + hexText(library.locale)};
    if (library.locale != LOCALE_NEUTRAL) {
        keys.push_back(version + hexText(LOCALE_NEUTRAL));
    }
    return keys;
}

std::wstring fileKey(const std::wstring& localeKey)
{
    return localeKey + L"\\" + Platform;
}

std::wstring interfaceKey(const Described& described)
{
    return L"Interface\\" + guidText(described.id);
}

void writeTypeLibrary(ClassesKey& classes, const TypeLibrary& library)
{
    const std::wstring version = libraryKey(library) + L"\\" + library.version;
    const std::wstring folder = library.path.substr(0, moduleFile().rfind(L'\\'));
    classes.set(version, L"", library.name);
    classes.set(version + L"\\FLAGS", L"", hexText(library.flags));
    classes.set(version + L"\\HELPDIR", L"", folder);
    for (const std::wstring& locale : localeKeys(library)) {
        classes.set(fileKey(locale), L"", library.path);
    }
    for (const Described& described : library.interfaces) {
        const std::wstring key = interfaceKey(described);
        // An interface of another maker's, which our library only describes once more, stays as it is.
        const std::wstring owner = classes.read(key + L"\\TypeLib");
        if (!owner.empty() && _wcsicmp(owner.c_str(), library.id.c_str()) != 0) {
            continue;
        }
        classes.set(key, L"", described.name);
        classes.set(key + L"\\ProxyStubClsid32", L"",
                    described.dispatchOnly ? DispatchMarshaller : AutomationMarshaller);
        classes.set(key + L"\\TypeLib", L"", library.id);
        classes.set(key + L"\\TypeLib", L"Version", library.version);
    }
}

/// A type library that another file has registered meanwhile is that file's.
void removeTypeLibrary(ClassesKey& classes, const TypeLibrary& library)
{
    const std::vector<std::wstring> locales = localeKeys(library);
    const std::wstring registered = classes.read(fileKey(locales.front()));
    if (_wcsicmp(registered.c_str(), library.path.c_str()) != 0) {
        return;
    }
    const std::wstring version = libraryKey(library) + L"\\" + library.version;
    for (const std::wstring& locale : locales) {
        classes.removeTree(fileKey(locale));
        classes.removeIfEmpty(locale);
    }
    // Interfaces are each width's own; the library they are of may still be registered for the other.
    for (const Described& described : library.interfaces) {
        const std::wstring owner = classes.read(interfaceKey(described) + L"\\TypeLib");
        if (_wcsicmp(owner.c_str(), library.id.c_str()) == 0) {
            classes.removeTree(interfaceKey(described));
        }
    }
    if (classes.read(locales.front() + (sizeof(void*) == 8 ? L"\\win32" : L"\\win64")).empty()) {
        classes.removeTree(version);
        classes.removeIfEmpty(libraryKey(library));
    }
}

void writeClass(ClassesKey& classes, const TypeLibrary& library)
{
    const std::wstring id = guidText(CLSID_SmsCreator);
    const std::wstring key = L"CLSID\\" + id;
    classes.set(key, L"", Description);
    classes.set(key + L"\\InprocServer32", L"", moduleFile());
    classes.set(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    classes.set(key + L"\\ProgID", L"", VersionedProgId);
    classes.set(key + L"\\VersionIndependentProgID", L"", ProgId);
    classes.set(key + L"\\TypeLib", L"", library.id);
    classes.set(key + L"\\Version", L"", Version);
    classes.set(key + L"\\Programmable", L"", L"");
    classes.set(VersionedProgId, L"", Description);
    classes.set(std::wstring(VersionedProgId) + L"\\CLSID", L"", id);
    classes.set(ProgId, L"", Description);
    classes.set(std::wstring(ProgId) + L"\\CLSID", L"", id);
    classes.set(std::wstring(ProgId) + L"\\CurVer", L"", VersionedProgId);
}

void removeClass(ClassesKey& classes)
{
    const std::wstring id = guidText(CLSID_SmsCreator);
    const std::wstring key = L"CLSID\\" + id;
    const std::wstring file = classes.read(key + L"\\InprocServer32");
    if (_wcsicmp(file.c_str(), moduleFile().c_str()) != 0) {
        return;
    }
    classes.removeTree(key);
    // The names are those of both widths.
    if (classes.otherWidthHas(key + L"\\InprocServer32")) {
        return;
    }
    for (const std::wstring progId : {ProgId, VersionedProgId}) {
        if (_wcsicmp(classes.read(progId + L"\\CLSID").c_str(), id.c_str()) == 0) {
            classes.removeTree(progId);
        }
    }
}

HRESULT remove(RegistryScope scope)
{
    ClassesKey classes(scope);
    removeClass(classes);
    for (int i = 1; i <= TypeLibraries; ++i) {
        removeTypeLibrary(classes, readTypeLibrary(i));
    }
    // A user who had no classes of his own has none again.
    for (const wchar_t* const shared : {L"CLSID", L"Interface", L"TypeLib", L""}) {
        classes.removeIfEmpty(shared);
    }
    return classes.result();
}

} // namespace

HRESULT registerServer(RegistryScope scope) noexcept
{
    const HRESULT result = comGuard(u"Zul_MessageBuilder", [&]() -> HRESULT {
        if (moduleFile().empty()) {
            return SELFREG_E_CLASS;
        }
        ClassesKey classes(scope);
        for (int i = 1; i <= TypeLibraries; ++i) {
            const TypeLibrary library = readTypeLibrary(i);
            if (i == 1) {
                writeClass(classes, library);
            }
            writeTypeLibrary(classes, library);
        }
        return classes.result();
    });
    if (FAILED(result)) {
        comGuard(u"Zul_MessageBuilder", [&] { return remove(scope); });
    }
    return result;
}

HRESULT unregisterServer(RegistryScope scope) noexcept
{
    return comGuard(u"Zul_MessageBuilder", [&] { return remove(scope); });
}

} // namespace zul
