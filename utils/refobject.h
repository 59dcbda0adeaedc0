// A reference-counted shared owner of one object, for the GL name managers.
//
// The last handle to let go destroys the object, and with it the GL name it
// holds.
#ifndef ZANOVIEW_UTILS_REFOBJECT_H
#define ZANOVIEW_UTILS_REFOBJECT_H

#include <cassert>
#include <cstdint>

namespace libutils {

// A handle on a heap block {count, object}. A null handle holds nothing;
// create() makes the object. Copies and assignments share the block and
// count up; release() and the destructor count down, and the handle that
// reaches 0 destroys the object and frees the block. The count is a plain
// integer: one thread only.
template <class T>
class refobject {
    struct block_t {
        std::uint64_t refcount;
        T object;
    };

public:
    refobject() = default;
    refobject(refobject const& other) : m_block(other.m_block) { retain(); }
    refobject& operator=(refobject const& other)
    {
        if (other.m_block != m_block) {
            // Count up first: `other` may be the last other share of ours.
            if (other.m_block) ++other.m_block->refcount;
            release();
            m_block = other.m_block;
        }
        return *this;
    }
    ~refobject() { release(); }

    // Lets go of what this handle held and holds a new, value-initialised
    // object with a count of 1.
    void create()
    {
        release();
        m_block = new block_t{1, T()};
    }

    // Counts down and leaves the handle null; at 0 the object is destroyed.
    void release()
    {
        if (m_block && --m_block->refcount == 0) delete m_block;
        m_block = nullptr;
    }

    explicit operator bool() const { return m_block != nullptr; }
    bool operator!() const { return m_block == nullptr; }
    // The handle must hold an object.
    T* operator->() const
    {
        assert(m_block);
        return &m_block->object;
    }
    T& operator*() const
    {
        assert(m_block);
        return m_block->object;
    }
    // Handles sharing the object, this one included; 0 when null.
    std::uint64_t use_count() const { return m_block ? m_block->refcount : 0; }

private:
    void retain()
    {
        if (m_block) ++m_block->refcount;
    }

    block_t* m_block = nullptr;
};

}  // namespace libutils

#endif
