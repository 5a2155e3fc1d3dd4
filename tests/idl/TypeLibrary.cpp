#include "tests/idl/TypeLibrary.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr std::uint32_t magic = 0x5446534d; // "MSFT"
constexpr std::uint32_t headerSize = 84;
constexpr std::uint32_t typeInfoSize = 100;
constexpr std::uint32_t none = 0xffffffff;

// The segments of the file, in the order of their directory.
enum Segment : std::uint32_t
{
    TypeInfoSegment = 0,
    ImportFileSegment = 2,
    ReferenceSegment = 3,
    GuidSegment = 5,
    NameSegment = 7
};

class Reader
{
public:
    explicit Reader(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(file), {});
        if (m_bytes.size() < headerSize || word(0) != magic) {
            throw std::runtime_error("no type library: " + path);
        }
        m_typeCount = word(32);
        const std::uint32_t helpDll = (word(20) & 0x100) != 0 ? 4 : 0;
        m_directory = headerSize + helpDll + 4 * m_typeCount;
    }

    template <typename T>
    T at(std::uint32_t offset) const
    {
        if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof(T)) {
            throw std::runtime_error("offset outside the file");
        }
        T value;
        std::memcpy(&value, m_bytes.data() + offset, sizeof value);
        return value;
    }
    std::uint32_t word(std::uint32_t offset) const { return at<std::uint32_t>(offset); }
    std::uint16_t half(std::uint32_t offset) const { return at<std::uint16_t>(offset); }

    std::uint32_t typeCount() const { return m_typeCount; }
    std::uint32_t segment(Segment which) const { return word(m_directory + 16u * which); }
    std::uint32_t segmentSize(Segment which) const { return word(m_directory + 16u * which + 4); }

    std::string name(std::uint32_t offset) const
    {
        if (offset == none) {
            return {};
        }
        const std::uint32_t entry = segment(NameSegment) + offset;
        return text(entry + 12, word(entry + 8) & 0xff);
    }
    GUID guid(std::uint32_t offset) const { return at<GUID>(segment(GuidSegment) + offset); }
    std::string text(std::uint32_t offset, std::uint32_t length) const
    {
        if (offset + length > m_bytes.size()) {
            throw std::runtime_error("text outside the file");
        }
        return {m_bytes.data() + offset, length};
    }

private:
    std::vector<char> m_bytes;
    std::uint32_t m_typeCount = 0;
    std::uint32_t m_directory = 0;
};

LibraryFunction readFunction(const Reader& reader, std::uint32_t at)
{
    LibraryFunction function{};
    const std::uint32_t size = reader.half(at);
    function.vtableOffset = reader.half(at + 12);
    const std::uint32_t kinds = reader.word(at + 16);
    function.funcKind = kinds & 0x7;
    function.invokeKind = kinds >> 3 & 0xf;
    const std::uint32_t count = reader.half(at + 20);
    function.optionalParams = reader.half(at + 22);
    // Twelve bytes per parameter, at the end of the record.
    for (std::uint32_t p = at + size - 12 * count; p < at + size; p += 12) {
        function.params.push_back({reader.name(reader.word(p + 4)), reader.word(p + 8)});
    }
    return function;
}

// The records of a type's functions and constants stand one behind another; their ids, their names and their
// places follow in three lists.
void readMembers(const Reader& reader, std::uint32_t at, std::uint32_t functions, std::uint32_t constants,
                 LibraryType& type)
{
    const std::uint32_t count = functions + constants;
    const std::uint32_t records = at + 4;
    const std::uint32_t ids = records + reader.word(at);
    const std::uint32_t names = ids + 4 * count;
    std::uint32_t record = records;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string name = reader.name(reader.word(names + 4 * i));
        if (i < functions) {
            LibraryFunction function = readFunction(reader, record);
            function.name = name;
            function.id = reader.word(ids + 4 * i);
            type.functions.push_back(std::move(function));
        } else {
            // Small values stand in the record itself, in 26 bits.
            type.constants.push_back({name, static_cast<std::int32_t>(reader.word(record + 16) & 0x3ffffff)});
        }
        record += reader.half(record);
    }
}

LibraryType readType(const Reader& reader, std::uint32_t at)
{
    LibraryType type{};
    type.kind = static_cast<TypeKind>(reader.word(at) & 0xf);
    type.guid = reader.guid(reader.word(at + 44));
    type.flags = reader.word(at + 48);
    type.name = reader.name(reader.word(at + 52));
    type.vtableSize = reader.half(at + 78);
    const std::uint32_t elements = reader.word(at + 24);
    if (type.kind == TypeKind::Coclass) {
        std::uint32_t reference = reader.word(at + 84);
        for (std::uint32_t i = reader.half(at + 76); i > 0 && reference != none; --i) {
            const std::uint32_t entry = reader.segment(ReferenceSegment) + reference;
            type.implements.push_back({reader.word(entry) / typeInfoSize, reader.word(entry + 4)});
            reference = reader.word(entry + 12);
        }
    } else {
        readMembers(reader, reader.word(at + 4), elements & 0xffff, elements >> 16, type);
    }
    return type;
}

} // namespace

TypeLibrary readTypeLibrary(const std::string& path)
{
    const Reader reader(path);
    TypeLibrary library{};
    library.guid = reader.guid(reader.word(8));
    library.lcid = reader.word(12);
    library.majorVersion = reader.word(24) & 0xffff;
    library.minorVersion = reader.word(24) >> 16;
    library.name = reader.name(reader.word(56));
    for (std::uint32_t i = 0; i < reader.typeCount(); ++i) {
        library.types.push_back(readType(reader, reader.segment(TypeInfoSegment) + i * typeInfoSize));
    }
    const std::uint32_t end = reader.segment(ImportFileSegment) + reader.segmentSize(ImportFileSegment);
    for (std::uint32_t at = reader.segment(ImportFileSegment); at < end;) {
        const std::uint32_t length = reader.half(at + 12) >> 2;
        library.importedFiles.push_back(reader.text(at + 14, length));
        at += (14 + length + 3) & ~3u;
    }
    return library;
}
