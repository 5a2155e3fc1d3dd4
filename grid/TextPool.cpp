#include "grid/TextPool.h"

#include <cstring>
#include <stdexcept>

namespace zul {

namespace {

// Bits of the hash that no slot of a sample's index is chosen by.
constexpr uint64_t oneOfSixteen = uint64_t{0xF} << 60;

uint64_t load64(const char* bytes)
{
    uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

uint64_t loadUpTo7(const char* bytes, size_t size)
{
    uint64_t value = 0;
    std::memcpy(&value, bytes, size);
    return value;
}

uint64_t mix(uint64_t value)
{
    value ^= value >> 32;
    value *= 0x9E3779B97F4A7C15ULL;
    value ^= value >> 29;
    return value;
}

} // namespace

bool TextPool::equalBytes(const char* left, const char* right, size_t size)
{
    return size == 0 || std::memcmp(left, right, size) == 0;
}

uint64_t TextPool::hash(const char* bytes, size_t size)
{
    uint64_t state = 0xC2B2AE3D27D4EB4FULL ^ size;
    while (size >= 8) {
        state = mix(state ^ load64(bytes)) * 0xD6E8FEB86659FD93ULL;
        bytes += 8;
        size -= 8;
    }
    if (size > 0) {
        state = mix(state ^ loadUpTo7(bytes, size)) * 0xD6E8FEB86659FD93ULL;
    }
    return mix(state);
}

std::string_view TextPool::longTextAt(const char* at)
{
    size_t size = 0;
    unsigned shift = 0;
    for (;;) {
        const auto byte = static_cast<unsigned char>(*at++);
        size |= static_cast<size_t>(byte & 0x7F) << shift;
        if (byte < 0x80) {
            return {at, size};
        }
        shift += 7;
    }
}

TextPool::Id TextPool::internOther(const char* bytes, size_t size)
{
    if (size == 0) {
        if (m_emptyId == noId) {
            m_emptyId = append(bytes, 0);
        }
        m_lastId = m_emptyId;
        m_lastText = {};
        return m_emptyId;
    }
    const uint64_t h = hash(bytes, size);
    if ((h & m_sample) != 0) {
        m_lastId = append(bytes, size);
        m_lastText = text(m_lastId);
        return m_lastId;
    }
    // At most 4 of 5 slots are taken; so an id + 1 always fits below a slot's hash bits.
    const size_t entries = (m_sample != 0 ? m_indexed : m_offsets.size()) + 1;
    if (!m_slots || entries * 5 > (size_t{4} << m_slotBits)) {
        // Small indexes grow in long strides: it is the building anew that costs.
        constexpr uint32_t leastBits = 8;
        constexpr uint32_t manyBits = 16;
        uint32_t bits = !m_slots ? leastBits : m_slotBits < manyBits ? m_slotBits + 2 : m_slotBits + 1;
        while (entries * 5 > (size_t{4} << bits)) {
            ++bits;
        }
        buildIndex(bits);
    }
    const uint32_t slotMask = (1U << m_slotBits) - 1;
    const uint32_t idMask = m_sample != 0 ? ~uint32_t{0} : slotMask;
    const uint32_t tag = static_cast<uint32_t>(h >> 32) & ~idMask;
    uint32_t slot = static_cast<uint32_t>(h) & slotMask;
    while (const uint32_t held = m_slots[slot]) {
        if ((held & ~idMask) == tag) {
            const Id id = (held & idMask) - 1;
            const std::string_view known = text(id);
            if (known.size() == size && equalBytes(bytes, known.data(), size)) {
                m_lastId = id;
                m_lastText = known;
                reckon(true);
                return id;
            }
        }
        slot = (slot + 1) & slotMask;
    }
    const Id id = append(bytes, size);
    m_slots[slot] = tag | (id + 1);
    ++m_indexed;
    m_lastId = id;
    m_lastText = text(id);
    reckon(false);
    return id;
}

void TextPool::reckon(bool known)
{
    // Small pools are looked up in no time; and a list has to be long before it tells whether its texts repeat.
    constexpr size_t manyTexts = 32768;
    constexpr uint32_t lookUps = 2048;
    m_hits += known ? 1U : 0U;
    if (++m_lookUps < lookUps) {
        return;
    }
    const bool hardly = m_hits < lookUps / 16;
    const bool often = m_hits > lookUps / 8;
    m_lookUps = 0;
    m_hits = 0;
    if (m_sample == 0 ? hardly && m_offsets.size() >= manyTexts : often) {
        m_sample ^= oneOfSixteen;
        m_indexed = m_sample != 0 ? static_cast<uint32_t>(m_offsets.size() / 16) : 0;
        dropIndex();
    }
}

TextPool::Id TextPool::append(const char* bytes, size_t size)
{
    char prefix[10];
    size_t prefixSize = 0;
    for (size_t rest = size;;) {
        const auto low = static_cast<unsigned char>(rest & 0x7F);
        rest >>= 7;
        prefix[prefixSize++] = static_cast<char>(rest != 0 ? low | 0x80 : low);
        if (rest == 0) {
            break;
        }
    }
    uint32_t offset = 0;
    char* at = allocate(prefixSize + size, offset);
    std::memcpy(at, prefix, prefixSize);
    if (size > 0) {
        std::memcpy(at + prefixSize, bytes, size);
    }
    const auto id = static_cast<Id>(m_offsets.size());
    m_offsets.push(offset);
    m_textBytes += prefixSize + size;
    return id;
}

char* TextPool::allocate(size_t size, uint32_t& offset)
{
    if (m_used + size > pageSize) {
        const size_t pages = (size + pageSize - 1) >> pageBits;
        if (m_pages.size() + pages > (size_t{1} << (32 - pageBits))) {
            throw std::length_error("a column holds more than 4 GiB of text");
        }
        m_blocks.push_back(std::unique_ptr<char[]>(new char[pages << pageBits]));
        for (size_t page = 0; page < pages; ++page) {
            m_pages.push_back(m_blocks.back().get() + (page << pageBits));
        }
        offset = static_cast<uint32_t>((m_pages.size() - pages) << pageBits);
        m_used = static_cast<uint32_t>(size - ((pages - 1) << pageBits));
        return m_blocks.back().get();
    }
    offset = static_cast<uint32_t>(((m_pages.size() - 1) << pageBits) + m_used);
    char* at = m_pages.back() + m_used;
    m_used += static_cast<uint32_t>(size);
    return at;
}

void TextPool::buildIndex(uint32_t bits)
{
    if (bits > 31) {
        throw std::length_error("a column holds more than 1.7 thousand million distinct texts");
    }
    const std::unique_ptr<uint32_t[]> sampled = m_sample != 0 ? std::move(m_slots) : nullptr;
    const uint32_t sampledBits = m_slotBits;
    // The old index of all texts goes first: it can be built from the texts, which lie in order.
    m_slots.reset();
    m_slots = std::make_unique<uint32_t[]>(size_t{1} << bits);
    m_slotBits = bits;
    m_indexed = 0;
    if (sampled) {
        for (size_t slot = 0; slot < size_t{1} << sampledBits; ++slot) {
            if (sampled[slot] != 0) {
                indexText(sampled[slot] - 1);
            }
        }
        return;
    }
    const auto count = static_cast<Id>(m_offsets.size());
    for (Id id = 0; id < count; ++id) {
        indexText(id);
        if (size_t{m_indexed} * 5 > size_t{4} << bits) { // the sample is larger than was to be expected
            m_slots.reset();
            buildIndex(bits + 1);
            return;
        }
    }
}

void TextPool::indexText(Id id)
{
    const std::string_view known = text(id);
    const uint64_t h = hash(known.data(), known.size());
    if ((h & m_sample) != 0) {
        return;
    }
    const uint32_t slotMask = (1U << m_slotBits) - 1;
    uint32_t slot = static_cast<uint32_t>(h) & slotMask;
    while (m_slots[slot] != 0) {
        slot = (slot + 1) & slotMask;
    }
    const uint32_t tag = m_sample != 0 ? 0 : static_cast<uint32_t>(h >> 32) & ~slotMask;
    m_slots[slot] = tag | (id + 1);
    ++m_indexed;
}

void TextPool::dropIndex()
{
    m_slots.reset();
    m_slotBits = 0;
}

size_t TextPool::bytes() const
{
    return m_textBytes + m_offsets.bytes() + (m_slots ? sizeof(uint32_t) << m_slotBits : 0);
}

} // namespace zul
