// In a process of 32 bits an exception finds its way by tables, which each library tells the compiler's run-time library
// about when it is loaded. This library has the run-time library in itself; but where the host has brought the shared one,
// the compiler's start code tells that one, of which the code in here knows nothing, and the first exception would end the
// process. So the tables are told to our own as well.
#include <windows.h>

#include <array>
#include <cstddef>
#include <cstring>

extern "C" {
void __register_frame_info(const void* tables, void* object);
void* __deregister_frame_info(const void* tables);
extern const IMAGE_DOS_HEADER __ImageBase;
}

namespace {

/// What the run-time library keeps of a library: six words, and more in later ones.
alignas(std::max_align_t) std::array<std::byte, 256> object;
const void* told = nullptr;

/// The section with the tables; null where there is none.
const void* tablesOfThisLibrary()
{
    const auto* const image = reinterpret_cast<const std::byte*>(&__ImageBase);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + __ImageBase.e_lfanew);
    const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(headers);
    constexpr std::array<char, IMAGE_SIZEOF_SHORT_NAME> name{'.', 'e', 'h', '_', 'f', 'r', 'a', 'm'};
    for (WORD i = 0; i < headers->FileHeader.NumberOfSections; ++i, ++section) {
        if (std::memcmp(section->Name, name.data(), name.size()) == 0) {
            return image + section->VirtualAddress;
        }
    }
    return nullptr;
}

/// Before the objects with constructors of their own.
[[gnu::constructor(101)]] void tellTables()
{
    if (GetModuleHandleW(L"libgcc_s_dw2-1.dll") != nullptr && (told = tablesOfThisLibrary()) != nullptr) {
        __register_frame_info(told, object.data());
    }
}

[[gnu::destructor(101)]] void takeTablesBack()
{
    if (told != nullptr) {
        __deregister_frame_info(told);
    }
}

} // namespace
