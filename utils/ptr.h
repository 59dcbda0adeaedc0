// An owning pointer for objects used through a virtual interface (codec
// objects): deletes what it holds, and is not a reference counter.
#ifndef ZANOVIEW_UTILS_PTR_H
#define ZANOVIEW_UTILS_PTR_H

namespace libutils {

// Deletes through the pointee's virtual destructor. It can't be copied:
// two owners would delete twice.
template <class T>
class ptr_t {
public:
    ptr_t() = default;
    explicit ptr_t(T* p) : m_p(p) {}
    ptr_t(ptr_t const&) = delete;
    ptr_t& operator=(ptr_t const&) = delete;
    ~ptr_t() { free(); }

    // Frees what it holds, then holds `p`; holding `p` already is a no-op.
    ptr_t& operator=(T* p)
    {
        if (p != m_p) {
            free();
            m_p = p;
        }
        return *this;
    }

    void free()
    {
        delete m_p;
        m_p = nullptr;
    }

    bool operator!() const { return m_p == nullptr; }
    operator T*() const { return m_p; }
    T* operator->() const { return m_p; }

private:
    T* m_p = nullptr;
};

}  // namespace libutils

#endif
