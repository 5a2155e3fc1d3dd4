// A growing array of plain values that never copies what it holds: a list of chunks of equal size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

namespace zul {

/// Appending costs no copy and no second buffer, so the memory at its highest is the memory at the end.
/// A chunk's pages are touched only when they are written: a list of twenty rows stays small.
template <typename T>
class ChunkedArray
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    static constexpr size_t chunkBits = 15;
    static constexpr size_t chunkSize = size_t{1} << chunkBits;
    static constexpr size_t chunkMask = chunkSize - 1;

    size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    void push(T value)
    {
        const size_t place = m_size & chunkMask;
        if (place == 0) {
            addChunk();
        }
        m_tail[place] = value;
        ++m_size;
    }

    void push(size_t count, T value)
    {
        while (count-- > 0) {
            push(value);
        }
    }

    T operator[](size_t index) const { return m_chunks[index >> chunkBits][index & chunkMask]; }
    void set(size_t index, T value) { m_chunks[index >> chunkBits][index & chunkMask] = value; }

    /// Where a value lies, for prefetching.
    const T* place(size_t index) const { return &m_chunks[index >> chunkBits][index & chunkMask]; }

    void clear()
    {
        m_chunks.clear();
        m_tail = nullptr;
        m_size = 0;
    }

    /// Bytes of the values held, chunks not yet full counted by what they hold.
    size_t bytes() const { return m_size * sizeof(T); }

private:
    void addChunk()
    {
        // Not make_unique: that would zero, and so touch, the whole chunk.
        m_chunks.push_back(std::unique_ptr<T[]>(new T[chunkSize]));
        m_tail = m_chunks.back().get();
    }

    std::vector<std::unique_ptr<T[]>> m_chunks;
    T* m_tail = nullptr;
    size_t m_size = 0;
};

} // namespace zul
