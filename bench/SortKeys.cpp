#include "bench/SortKeys.h"

#include "grid/RadixSort.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace zul::bench {

namespace {

using Collator = std::unique_ptr<UCollator, decltype(&ucol_close)>;

Collator collatorOf(const QLocale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray name = locale.collation().bcp47Name().toUtf8().replace('-', '_');
    Collator collator(ucol_open(name.constData(), &status), &ucol_close);
    ucol_setAttribute(collator.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    ucol_setAttribute(collator.get(), UCOL_STRENGTH, UCOL_SECONDARY, &status);
    if (U_FAILURE(status)) {
        throw std::runtime_error(u_errorName(status));
    }
    return collator;
}

/// A text's key: its first bytes as a number, and where it lies.
struct Item
{
    uint64_t key;
    uint64_t next;
    uint32_t id;
    uint32_t offset;
};

uint64_t numberFrom(const uint8_t* bytes, size_t count)
{
    uint64_t number = 0;
    std::memcpy(&number, bytes, std::min<size_t>(count, 8));
    return __builtin_bswap64(number);
}

/// The keys of all texts, one behind the other, each with the 0 at its end.
class Keys
{
public:
    Keys(const TextPool& pool, const QLocale& locale)
    {
        const Collator collator = collatorOf(locale);
        std::vector<char16_t> text(256);
        items.reserve(pool.size());
        for (uint32_t id = 0; id < pool.size(); ++id) {
            const std::string_view utf8 = pool.text(id);
            text.resize(std::max(text.size(), utf8.size() + 1));
            int32_t units = 0;
            UErrorCode status = U_ZERO_ERROR;
            u_strFromUTF8WithSub(text.data(), static_cast<int32_t>(text.size()), &units, utf8.data(),
                                 static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
            items.push_back({0, 0, id, static_cast<uint32_t>(bytes.size())});
            size_t room = utf8.size() * 4 + 16;
            for (;;) {
                bytes.resize(items.back().offset + room);
                const auto size = static_cast<size_t>(ucol_getSortKey(collator.get(), text.data(), units,
                                                                      bytes.data() + items.back().offset,
                                                                      static_cast<int32_t>(room)));
                bytes.resize(items.back().offset + std::min(size, room));
                if (size <= room) {
                    break;
                }
                room = size;
            }
        }
        bytes.resize(bytes.size() + 16); // so that whole words can be read at the end
    }

    /// Bytes that all keys begin with.
    size_t sharedBeginning() const
    {
        size_t shared = items.empty() ? 0 : std::strlen(textOf(items.front()));
        for (const Item& item : items) {
            const auto differ = std::mismatch(textOf(item), textOf(item) + shared, textOf(items.front()));
            shared = static_cast<size_t>(differ.first - textOf(item));
        }
        return shared;
    }

    const char* textOf(const Item& item) const
    {
        return reinterpret_cast<const char*>(bytes.data() + item.offset);
    }
    int compare(const Item& a, const Item& b) const { return std::strcmp(textOf(a), textOf(b)); }

    std::vector<uint8_t> bytes;
    std::vector<Item> items;
};

} // namespace

std::vector<uint32_t> ranksBySortKeys(const TextPool& pool, const QLocale& locale)
{
    Keys keys(pool, locale);
    const size_t shared = keys.sharedBeginning();
    for (Item& item : keys.items) {
        const uint8_t* at = keys.bytes.data() + item.offset + shared;
        const size_t size = std::strlen(reinterpret_cast<const char*>(at));
        item.key = numberFrom(at, size);
        item.next = size > 8 ? numberFrom(at + 8, size - 8) : 0;
    }
    const unsigned open = radixSort(keys.items, 6);
    for (auto begin = keys.items.begin(); begin != keys.items.end();) {
        const auto end = std::find_if(begin, keys.items.end(), [&](const Item& item) {
            return item.key >> open != begin->key >> open;
        });
        std::sort(begin, end, [&keys](const Item& a, const Item& b) {
            return a.key != b.key     ? a.key < b.key
                   : a.next != b.next ? a.next < b.next
                                      : keys.compare(a, b) < 0;
        });
        begin = end;
    }
    std::vector<uint32_t> ranks(pool.size());
    uint32_t rank = 0;
    for (size_t i = 0; i < keys.items.size(); ++i) {
        rank += i == 0 || keys.compare(keys.items[i - 1], keys.items[i]) != 0 ? 1U : 0U;
        ranks[keys.items[i].id] = pool.text(keys.items[i].id).empty() ? 0 : rank;
    }
    return ranks;
}

} // namespace zul::bench
