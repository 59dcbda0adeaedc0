// Reference-counted arrays whose storage comes from an allocator policy, so
// that a mapped file can serve as an array; ofsvector adds a window onto it.
#ifndef ZANOVIEW_UTILS_REFVECTOR2_H
#define ZANOVIEW_UTILS_REFVECTOR2_H

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstring>
#include <type_traits>

#include "utils/alloc.h"

namespace libutils {

// The shared record behind refvector2 handles. It does not depend on the
// element type, so handles of different element types can share one block:
// a header, a palette and the pixels can all look into one mapped file.
template <class A>
struct refblock_t {
    unsigned long refcount;
    unsigned long size;  // bytes
    A allocator;
    unsigned char* data;
};

// A handle on a shared block of storage. Copies and assignments share the
// block (nothing is copied); the storage goes with the last handle.
// Counts are in elements, the block's size in bytes.
template <class T, class A>
class refvector2 {
    // The storage is raw memory or a mapped file: elements are never
    // constructed, only copied as bytes.
    static_assert(std::is_trivially_copyable<T>::value, "elements are copied as bytes");

public:
    using block_type = refblock_t<A>;

    refvector2() = default;
    refvector2(refvector2 const& other) : m_block(other.m_block) { retain(); }
    // Shares the block of a handle of another element type.
    template <class U>
    explicit refvector2(refvector2<U, A> const& other) : m_block(other.m_block) { retain(); }
    refvector2& operator=(refvector2 const& other)
    {
        share(other.m_block);
        return *this;
    }
    template <class U>
    refvector2& operator=(refvector2<U, A> const& other)
    {
        share(other.m_block);
        return *this;
    }

    // No block, or a block of 0 bytes.
    virtual bool empty() const { return !m_block || m_block->size == 0; }
    // Whole elements in the block; 0 without one.
    virtual unsigned long size() const { return m_block ? m_block->size / sizeof(T) : 0; }
    virtual T* begin() { return m_block ? reinterpret_cast<T*>(m_block->data) : nullptr; }
    virtual T* end() { return m_block ? begin() + size() : nullptr; }
    virtual T const* begin() const { return m_block ? reinterpret_cast<T const*>(m_block->data) : nullptr; }
    virtual T const* end() const { return m_block ? begin() + size() : nullptr; }
    // No bounds check; the handle must hold a block.
    virtual T& operator[](unsigned long i)
    {
        assert(m_block);
        return reinterpret_cast<T*>(m_block->data)[i];
    }
    virtual T const& operator[](unsigned long i) const
    {
        assert(m_block);
        return reinterpret_cast<T const*>(m_block->data)[i];
    }
    virtual T* operator->() { return begin(); }
    virtual T const* operator->() const { return begin(); }

    // A new block of `count` elements from the allocator; with a `path`, the
    // file's bytes from `offset` on, and a `count` of 0 takes the whole file.
    // Without `keep` the old block is released first. With `keep` the old
    // block stays on failure, and on success as many bytes as both have are
    // carried over (unless the new storage is a read-only mapping) before the
    // old block is released. Returns false on failure.
    virtual bool load(unsigned long count, char const* path, e_prot_t prot,
                      unsigned long long offset, bool keep, android_app* app)
    {
        if (!keep) deallocate();
        block_type* block = make_block(count, path, prot, offset, app);
        if (!block) return false;
        if (keep && m_block) {
            if (block->allocator.writable())
                std::memcpy(block->data, m_block->data, std::min(bytes_of(count), m_block->size));
            deallocate();
        }
        m_block = block;
        return true;
    }

    // Gives the block's storage a new size through the allocator's
    // reallocate, which every handle sharing the block sees. Without a block,
    // an anonymous read-write area of `count` elements. Returns false, and
    // leaves the storage as it was, when the allocator can't do it.
    virtual bool resize(unsigned long count, unsigned long long offset)
    {
        if (!m_block) return allocate(count, nullptr, PROTECT_READWRITE, 0);
        if (count > ULONG_MAX / sizeof(T)) return false;
        void* p = m_block->allocator.reallocate(m_block->data, bytes_of(count), offset);
        if (!p) return false;
        m_block->data = static_cast<unsigned char*>(p);
        m_block->size = bytes_of(count);
        return true;
    }

    virtual void clear() { deallocate(); }
    virtual ~refvector2() { deallocate(); }

    bool is_allocated() const { return m_block != nullptr; }

    // Releases the block, then makes a new one as load does.
    bool allocate(unsigned long count, char const* path, e_prot_t prot, unsigned long long offset)
    {
        deallocate();
        m_block = make_block(count, path, prot, offset, nullptr);
        return m_block != nullptr;
    }

    // Lets go of the block; the last handle releases the storage.
    void deallocate()
    {
        if (m_block && --m_block->refcount == 0) {
            m_block->allocator.deallocate(m_block->data);
            delete m_block;
        }
        m_block = nullptr;
    }

protected:
    static unsigned long bytes_of(unsigned long count) { return count * sizeof(T); }

    // A block with a reference count of 1, or null when the allocator fails
    // or `count` elements don't fit in an unsigned long of bytes.
    static block_type* make_block(unsigned long count, char const* path, e_prot_t prot,
                                  unsigned long long offset, android_app* app)
    {
        if (count > ULONG_MAX / sizeof(T)) return nullptr;
        block_type* block = new block_type{1, bytes_of(count), A(), nullptr};
        void* p = block->allocator.allocate(block->size, path, prot, offset, app);
        if (!p) {
            delete block;
            return nullptr;
        }
        block->data = static_cast<unsigned char*>(p);
        return block;
    }

    // Drops the block this handle holds for `block` (which may be null).
    void share(block_type* block)
    {
        if (block == m_block) return;
        if (block) ++block->refcount;
        deallocate();
        m_block = block;
    }

    void retain()
    {
        if (m_block) ++m_block->refcount;
    }

    block_type* m_block = nullptr;

    template <class U, class B>
    friend class refvector2;
};

// A window onto a shared block: `offset` bytes in, `count` elements long.
// Several windows of different element types can look into one mapped file
// without a copy. A copy of an ofsvector is the same window; assigning a
// handle of another element type shares its block with a window onto all of
// it, ready for the caller to set `offset` and `count`.
template <class T, class A>
class ofsvector : public refvector2<T, A> {
    using base = refvector2<T, A>;

public:
    // The value of `count` that means "to the end of the storage".
    static constexpr unsigned long npos = static_cast<unsigned long>(-1);

    ofsvector() = default;
    ofsvector(ofsvector const&) = default;
    ofsvector& operator=(ofsvector const&) = default;
    template <class U>
    explicit ofsvector(refvector2<U, A> const& other) : base(other)
    {
    }
    template <class U>
    ofsvector& operator=(refvector2<U, A> const& other)
    {
        base::operator=(other);
        offset = 0;
        count = npos;
        return *this;
    }

    bool empty() const override { return base::empty() || count == 0; }

    // Whole elements from `offset` to the end of the block, at most `count`.
    // An `offset` beyond the block leaves nothing to see.
    unsigned long size() const override
    {
        unsigned long const bytes = base::size() * sizeof(T);
        if (offset >= bytes) return 0;
        unsigned long const n = (bytes - offset) / sizeof(T);
        return count == npos ? n : std::min(n, count);
    }

    T* begin() override { return this->m_block ? window(base::begin()) : nullptr; }
    T* end() override { return this->m_block ? begin() + size() : nullptr; }
    T const* begin() const override { return this->m_block ? window(base::begin()) : nullptr; }
    T const* end() const override { return this->m_block ? begin() + size() : nullptr; }
    T& operator[](unsigned long i) override
    {
        assert(this->m_block);
        return begin()[i];
    }
    T const& operator[](unsigned long i) const override
    {
        assert(this->m_block);
        return begin()[i];
    }
    T* operator->() override { return begin(); }
    T const* operator->() const override { return begin(); }

    // As the base, then the window covers the whole new storage.
    bool load(unsigned long newcount, char const* path, e_prot_t prot,
              unsigned long long map_offset, bool keep, android_app* app) override
    {
        bool const ok = base::load(newcount, path, prot, map_offset, keep, app);
        offset = 0;
        count = npos;
        return ok;
    }

    // Moves this handle to a private anonymous read-write copy of
    // `newcount` elements (never a remap, also of a read-only file), holding
    // the bytes of the window from `offset` on at element 0. Other handles on
    // the old block keep it as it was. Without a block, as the base.
    // NOTE: a `count` smaller than the old block limits the copy as a number
    // of bytes, whatever sizeof(T) is: callers size their windows to match.
    bool resize(unsigned long newcount, unsigned long long map_offset) override
    {
        if (!this->m_block) return base::resize(newcount, map_offset);
        typename base::block_type* block =
            base::make_block(newcount, nullptr, PROTECT_READWRITE, map_offset, nullptr);
        if (!block) return false;
        unsigned long const old_size = this->m_block->size;
        unsigned long n = std::min(block->size, old_size);
        if (count != npos && count < old_size) n = std::min(block->size, count);
        // Never read behind the old storage, whatever the window says.
        n = std::min(n, offset < old_size ? old_size - offset : 0);
        std::memcpy(block->data, this->m_block->data + offset, n);
        this->deallocate();
        this->m_block = block;
        offset = 0;
        count = npos;
        return true;
    }

    void clear() override
    {
        base::clear();
        offset = 0;
        count = npos;
    }

    unsigned long offset = 0;   // bytes from the start of the storage to element 0
    unsigned long count = npos; // elements visible, npos for all up to the end

private:
    T* window(T* p) const { return reinterpret_cast<T*>(reinterpret_cast<unsigned char*>(p) + offset); }
    T const* window(T const* p) const
    {
        return reinterpret_cast<T const*>(reinterpret_cast<unsigned char const*>(p) + offset);
    }
};

}  // namespace libutils

#endif
