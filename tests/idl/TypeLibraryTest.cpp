// The type libraries hold what hosts are compiled against.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <objbase.h>

#include "base/Utf8.h"
#include "tests/idl/TypeLibrary.h"

using testing::ElementsAre;

namespace {

constexpr std::uint32_t canCreate = 0x2;
constexpr std::uint32_t hidden = 0x10;
constexpr std::uint32_t dual = 0x40;
constexpr std::uint32_t nonExtensible = 0x80;
constexpr std::uint32_t oleAutomation = 0x100;
constexpr std::uint32_t dispatchable = 0x1000;

constexpr std::uint32_t method = 1;
constexpr std::uint32_t propertyGet = 2;
constexpr std::uint32_t propertyPut = 4;

constexpr std::uint32_t in = 1;
constexpr std::uint32_t inOut = 3;
constexpr std::uint32_t result = 10;

TypeLibrary library(const std::string& name)
{
    return readTypeLibrary(std::string(ZUL_TLB_DIR) + "/" + name + ".tlb");
}

std::string textOf(const GUID& guid)
{
    OLECHAR text[39];
    EXPECT_EQ(StringFromGUID2(guid, text, 39), 39);
    return zul::utf8FromUtf16({reinterpret_cast<const char16_t*>(text), 38});
}

struct ExpectedMember
{
    std::string name;
    std::uint32_t id;
    std::uint32_t kind;
    std::vector<std::string> params;
    bool hasResult;
};

// In the order of the virtual table, after the seven members of IDispatch.
const ExpectedMember smsCreatorMembers[] = {
    {"idUtente", 0x68030000, propertyPut, {""}, false},
    {"idUtente", 0x68030000, propertyGet, {}, true},
    {"InitWhatToShow", 0x60030002, method, {"showSendSms", "showSendMail", "showPushNotify"}, true},
    {"InitWhatToSearch", 0x60030003, method, {"searchBy_Ricorrenze", "searchBy_Classificazioni"}, true},
    {"ShowForm", 0x60030004, method, {"SqlConnection", "PathMainApplication", "ShowTouchMode"}, true},
    {"isOkPressed", 0x60030005, method, {}, true},
    {"DiscardForm", 0x60030006, method, {}, true},
    {"EventoGrd_CaricaGrd",
     0x60030007,
     method,
     {"grdCodejock", "SqlString", "strVisibility", "strIconIndex", "strEditMask", "strSizable",
      "strButtonType", "strPreFormat", "strPreFormatQta", "strPreFormatColore", "CaptionCollection"},
     false},
    {"ShowOptions", 0x60030008, method, {"SqlConnection", "PathMainApplication", "ShowTouchMode"}, true},
    {"ShowCheckErrorSMSSend", 0x60030009, method, {"SqlConnection", "ShowTouchMode"}, true},
    {"DiscardOptionsForm", 0x6003000A, method, {}, true},
    {"GetOptionsFormChoice", 0x6003000B, method, {}, true},
    {"GetFormChoice", 0x6003000C, method, {}, true},
};

} // namespace

TEST(MessageBuilderLibrary, HasItsNameIdVersionAndLocale)
{
    const TypeLibrary lib = library("Zul_MessageBuilder");
    EXPECT_EQ(lib.name, "Zul_MessageBuilder");
    EXPECT_EQ(textOf(lib.guid), "{B3AEBC3A-1B5D-49DD-9826-0C82602E8BE8}");
    EXPECT_EQ(lib.majorVersion, 1u);
    EXPECT_EQ(lib.minorVersion, 0u);
    EXPECT_EQ(lib.lcid, 0x0409u);
    EXPECT_THAT(lib.importedFiles, ElementsAre("stdole2.tlb", "Zul_SQL.tlb", "Zul_Controls.tlb"));
}

TEST(MessageBuilderLibrary, HasFourTypesInOrder)
{
    const TypeLibrary lib = library("Zul_MessageBuilder");
    ASSERT_EQ(lib.types.size(), 4u);

    EXPECT_EQ(lib.types[0].name, "_SmsCreator");
    EXPECT_EQ(lib.types[0].kind, TypeKind::Dispatch);
    EXPECT_EQ(textOf(lib.types[0].guid), "{6804283C-F80E-4C49-9478-A7AC4BC7D2CE}");
    EXPECT_EQ(lib.types[0].flags, hidden | dual | nonExtensible | oleAutomation | dispatchable);

    EXPECT_EQ(lib.types[1].name, "SmsCreator");
    EXPECT_EQ(lib.types[1].kind, TypeKind::Coclass);
    EXPECT_EQ(textOf(lib.types[1].guid), "{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}");
    EXPECT_EQ(lib.types[1].flags, canCreate);

    EXPECT_EQ(lib.types[2].name, "__SmsCreator");
    EXPECT_EQ(lib.types[2].kind, TypeKind::Dispatch);
    EXPECT_EQ(textOf(lib.types[2].guid), "{86A47753-ACA6-458D-84D4-6FF860CB7D8E}");
    EXPECT_EQ(lib.types[2].flags, hidden | dispatchable) << "an event source is not dual";

    EXPECT_EQ(lib.types[3].name, "tipoCampagna");
    EXPECT_EQ(lib.types[3].kind, TypeKind::Enum);
    EXPECT_EQ(textOf(lib.types[3].guid), "{1EDB76B6-D034-4993-8904-8D809928F852}");
}

TEST(MessageBuilderLibrary, TheClassHasADefaultInterfaceAndADefaultSource)
{
    const TypeLibrary lib = library("Zul_MessageBuilder");
    const std::vector<LibraryImplements>& implements = lib.types.at(1).implements;
    ASSERT_EQ(implements.size(), 2u);
    EXPECT_EQ(implements[0].type, 0u);
    EXPECT_EQ(implements[0].flags, 1u) << "default";
    EXPECT_EQ(implements[1].type, 2u);
    EXPECT_EQ(implements[1].flags, 3u) << "default source";
}

TEST(MessageBuilderLibrary, MembersOfTheClassHaveTheirIdsSlotsAndArguments)
{
    const LibraryType type = library("Zul_MessageBuilder").types.at(0);
    ASSERT_EQ(type.functions.size(), std::size(smsCreatorMembers));
    EXPECT_EQ(type.vtableSize, (7 + type.functions.size()) * sizeof(void*));
    for (std::size_t i = 0; i < type.functions.size(); ++i) {
        const LibraryFunction& function = type.functions[i];
        const ExpectedMember& expected = smsCreatorMembers[i];
        SCOPED_TRACE(expected.name + " in slot " + std::to_string(i + 1));
        EXPECT_EQ(function.name, expected.name);
        EXPECT_EQ(function.id, expected.id);
        EXPECT_EQ(function.invokeKind, expected.kind);
        EXPECT_EQ(function.vtableOffset, (7 + i) * sizeof(void*));
        EXPECT_EQ(function.optionalParams, 0u);
        ASSERT_EQ(function.params.size(), expected.params.size() + (expected.hasResult ? 1 : 0));
        for (std::size_t p = 0; p < expected.params.size(); ++p) {
            EXPECT_EQ(function.params[p].name, expected.params[p]);
            // The new value of idUtente is the one argument that is passed by value.
            EXPECT_EQ(function.params[p].flags, expected.kind == propertyPut ? in : inOut);
        }
        if (expected.hasResult) {
            EXPECT_EQ(function.params.back().flags, result);
        }
    }
}

TEST(MessageBuilderLibrary, TheEventHasTheArgumentsOfTheMemberThatRaisesIt)
{
    const TypeLibrary lib = library("Zul_MessageBuilder");
    const LibraryType& events = lib.types.at(2);
    ASSERT_EQ(events.functions.size(), 1u);
    EXPECT_EQ(events.functions[0].name, "CaricaGriglia");
    EXPECT_EQ(events.functions[0].id, 1u);
    EXPECT_EQ(events.functions[0].invokeKind, method);
    EXPECT_EQ(events.functions[0].funcKind, 4u) << "dispatch only";

    std::vector<std::string> names;
    for (const LibraryParam& param : events.functions[0].params) {
        names.push_back(param.name);
        EXPECT_EQ(param.flags, inOut);
    }
    EXPECT_EQ(names, smsCreatorMembers[7].params);
}

TEST(MessageBuilderLibrary, CampaignKindsHaveTheirValues)
{
    const LibraryType type = library("Zul_MessageBuilder").types.at(3);
    ASSERT_EQ(type.constants.size(), 3u);
    EXPECT_EQ(type.constants[0].name, "tipoCampagna_Telefonica");
    EXPECT_EQ(type.constants[0].value, 1);
    EXPECT_EQ(type.constants[1].name, "tipoCampagna_Mail");
    EXPECT_EQ(type.constants[1].value, 2);
    EXPECT_EQ(type.constants[2].name, "tipoCampagna_Fax");
    EXPECT_EQ(type.constants[2].value, 3);
}

TEST(HostLibraries, KnownInterfacesKeepTheirIds)
{
    const auto guidOf = [](const TypeLibrary& lib, const std::string& name) -> std::string {
        for (const LibraryType& type : lib.types) {
            if (type.name == name) {
                return textOf(type.guid);
            }
        }
        return "missing";
    };
    EXPECT_EQ(guidOf(library("Zul_SQL"), "_SqlConnection"), "{0EB5F7EA-6129-4ABB-8E1F-2282F38856FB}");
    EXPECT_EQ(guidOf(library("Zul_Controls"), "_Collection"), "{A4C46780-499F-101B-BB78-00AA00383CBB}");
}

TEST(HostLibraries, EveryDualInterfaceIsForAutomation)
{
    for (const char* const name : {"Zul_SQL", "Zul_Controls", "Zul_Host", "Zul_MessageBuilder"}) {
        for (const LibraryType& type : library(name).types) {
            if ((type.flags & dual) != 0) {
                EXPECT_EQ(type.flags & (oleAutomation | nonExtensible), oleAutomation | nonExtensible)
                    << type.name;
                for (std::size_t i = 0; i < type.functions.size(); ++i) {
                    EXPECT_EQ(type.functions[i].vtableOffset, (7 + i) * sizeof(void*))
                        << type.functions[i].name;
                }
            }
        }
    }
}

TEST(HostLibraries, AddOfTheCollectionHasThreeOptionalArguments)
{
    const LibraryType type = library("Zul_Controls").types.at(0);
    ASSERT_EQ(type.name, "_Collection");
    ASSERT_GE(type.functions.size(), 2u);
    EXPECT_EQ(type.functions[1].name, "Add");
    EXPECT_EQ(type.functions[1].optionalParams, 3u);
}

TEST(TypeLibraryReader, RefusesAFileThatIsNone)
{
    EXPECT_THROW(readTypeLibrary("/nonexistent.tlb"), std::runtime_error);
    EXPECT_THROW(readTypeLibrary(__FILE__), std::runtime_error);
}
