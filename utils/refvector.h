// A reference-counted array for small tables (palette colour tables): header
// and elements in one allocation, shared by assignment.
#ifndef ZANOVIEW_UTILS_REFVECTOR_H
#define ZANOVIEW_UTILS_REFVECTOR_H

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstring>
#include <new>
#include <type_traits>

#include "utils/alloc.h"

namespace libutils {

// Copies and assignments share the block; resize always gives this handle a
// private block, so it is the way to stop sharing.
// NOTE: size() is the block's total in bytes, header included, and not the
// element count: callers keep their own count (palette_t does). end() stops
// behind the elements actually there.
template <class T, class A>
class refvector {
    static_assert(std::is_trivially_copyable<T>::value, "elements are copied as bytes");

    struct header_t {
        unsigned long refcount;
        unsigned long size;  // bytes of the whole block, header included
        A allocator;
    };
    // The elements start behind the header, aligned for T.
    static constexpr unsigned long s_head =
        (sizeof(header_t) + alignof(T) - 1) / alignof(T) * alignof(T);

public:
    refvector() = default;
    refvector(refvector const& other) : m_block(other.m_block)
    {
        if (m_block) ++m_block->refcount;
    }

    virtual bool empty() const { return !m_block || m_block->size == 0; }
    virtual unsigned long size() const { return m_block ? m_block->size : 0; }
    virtual T* begin() { return m_block ? elements() : nullptr; }
    virtual T* end() { return m_block ? elements() + element_count() : nullptr; }
    virtual T const* begin() const { return m_block ? elements() : nullptr; }
    virtual T const* end() const { return m_block ? elements() + element_count() : nullptr; }
    // No bounds check; the handle must hold a block.
    virtual T& operator[](unsigned long i)
    {
        assert(m_block);
        return elements()[i];
    }
    virtual T const& operator[](unsigned long i) const
    {
        assert(m_block);
        return elements()[i];
    }
    virtual T* operator->() { return begin(); }
    virtual T const* operator->() const { return begin(); }

    // Shares the other's block; nothing happens when both already share one.
    virtual refvector& operator=(refvector const& other)
    {
        if (other.m_block == m_block) return *this;
        if (other.m_block) ++other.m_block->refcount;
        release();
        m_block = other.m_block;
        return *this;
    }

    // A private block of `n` elements holding as many of the old ones as fit
    // (the rest zeroed); 0 empties the handle. Returns false, and changes
    // nothing, when the storage can't be had.
    virtual bool resize(unsigned long n)
    {
        if (n == 0) {
            release();
            return true;
        }
        if (n > (ULONG_MAX - s_head) / sizeof(T)) return false;
        unsigned long total = s_head + n * sizeof(T);
        A allocator;
        void* p = allocator.allocate(total, nullptr, PROTECT_READWRITE, 0, nullptr);
        if (!p) return false;
        std::memset(p, 0, total);
        header_t* block = new (p) header_t{1, total, allocator};
        if (m_block) {
            unsigned long const old_bytes = m_block->size - s_head;
            std::memcpy(elements(block), elements(m_block), std::min(n * sizeof(T), old_bytes));
        }
        release();
        m_block = block;
        return true;
    }

    virtual void clear() { release(); }
    virtual ~refvector() { release(); }

private:
    static T* elements(header_t* block) { return reinterpret_cast<T*>(reinterpret_cast<unsigned char*>(block) + s_head); }
    T* elements() const { return elements(m_block); }
    unsigned long element_count() const { return (m_block->size - s_head) / sizeof(T); }

    void release()
    {
        if (m_block && --m_block->refcount == 0) {
            // The allocator lives inside the block it frees: take it out first.
            A allocator = m_block->allocator;
            m_block->~header_t();
            allocator.deallocate(m_block);
        }
        m_block = nullptr;
    }

    header_t* m_block = nullptr;
};

}  // namespace libutils

#endif
