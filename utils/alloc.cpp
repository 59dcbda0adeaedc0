#include "utils/alloc.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace libutils {

char const memory_error[] = "can't alloc memory.\n";

// ---------------------------------------------------------------- alloc_new

void* alloc_new::allocate(unsigned long& size, char const* path, e_prot_t /*prot*/,
                          unsigned long long /*offset*/, android_app* /*app*/)
{
    if (path && size == 0) {
        struct stat st;
        if (::stat(path, &st) != 0 || st.st_size <= 0) return nullptr;
        size = static_cast<unsigned long>(st.st_size);
    }
    std::FILE* file = nullptr;
    if (path) {
        // Opened before allocating, so that a missing file costs nothing and
        // never hands out a buffer of garbage as if it were the file.
        file = std::fopen(path, "rb");
        if (!file) return nullptr;
    }
    // Zeroed, so that a file shorter than `size` leaves defined bytes behind it.
    unsigned char* p = new (std::nothrow) unsigned char[size]();
    if (p && file) {
        // Fewer bytes than asked for is the end of the file, which the zeros
        // stand for; an error of the read is not, and gives no buffer.
        std::size_t const got = std::fread(p, 1, size, file);
        if (got < size && std::ferror(file)) {
            delete[] p;
            p = nullptr;
        }
    }
    // NOTE: the file was only read; a failing close loses nothing.
    if (file) static_cast<void>(std::fclose(file));
    if (p) this->size = size;
    return p;
}

void* alloc_new::reallocate(void* p, unsigned long size, unsigned long long /*offset*/)
{
    unsigned char* q = new (std::nothrow) unsigned char[size]();
    if (!q) return nullptr;
    if (p) {
        std::memcpy(q, p, std::min(this->size, size));
        delete[] static_cast<unsigned char*>(p);
    }
    this->size = size;
    return q;
}

void alloc_new::deallocate(void* p)
{
    delete[] static_cast<unsigned char*>(p);
}

// ---------------------------------------------------------- alloc_mmap_unix

namespace {

constexpr std::uintptr_t kHugePage = 2ul << 20;  // bytes
constexpr std::uintptr_t kPage = 4096;           // bytes

// Private anonymous memory; a large block (a decoded photo) on huge-page
// boundaries and marked for huge pages, so that filling it takes one fault
// for 2 MiB rather than one for every 4 KiB. On a virtual machine the faults
// of fresh memory cost more than the writes that cause them.
void* map_anonymous(unsigned long size, int prot)
{
    // A size that can't be had anyway is left to fail as it is.
    if (size < 2 * kHugePage || size > UINTPTR_MAX / 2)
        return ::mmap(nullptr, size, prot, MAP_ANON | MAP_PRIVATE, -1, 0);
    std::uintptr_t const span = size + kHugePage;
    void* const raw = ::mmap(nullptr, span, prot, MAP_ANON | MAP_PRIVATE, -1, 0);
    if (raw == MAP_FAILED) return MAP_FAILED;
    std::uintptr_t const start = reinterpret_cast<std::uintptr_t>(raw);
    std::uintptr_t const aligned = (start + kHugePage - 1) & ~(kHugePage - 1);
    std::uintptr_t const end = (aligned + size + kPage - 1) & ~(kPage - 1);
    if (aligned > start) ::munmap(raw, aligned - start);
    if (start + span > end) ::munmap(reinterpret_cast<void*>(end), start + span - end);
    void* const p = reinterpret_cast<void*>(aligned);
    // Only advice: without it the block is still good memory.
    ::madvise(p, size, MADV_HUGEPAGE);
    return p;
}

}  // namespace

void* alloc_mmap_unix::allocate(unsigned long& size, char const* path, e_prot_t prot,
                                unsigned long long offset, android_app* /*app*/)
{
    if (prot != PROTECT_READ && prot != PROTECT_READWRITE) return nullptr;
    openmode = prot == PROTECT_READWRITE ? O_RDWR : O_RDONLY;
    this->prot = prot == PROTECT_READWRITE ? PROT_READ | PROT_WRITE : PROT_READ;

    if (path) {
        flags = MAP_SHARED;
        fd = ::open(path, openmode | O_CLOEXEC);
        if (fd < 0) return nullptr;
        // Touching a file mapping behind the file's end raises SIGBUS, so a
        // truncated file is refused here rather than crashing its reader.
        struct stat st;
        unsigned long long const length = ::fstat(fd, &st) == 0 && st.st_size > 0 ? st.st_size : 0;
        if (offset >= length) {
            deallocate(nullptr);
            return nullptr;
        }
        if (size == 0) size = static_cast<unsigned long>(length - offset);
        if (size > length - offset) {
            deallocate(nullptr);
            return nullptr;
        }
    } else {
        fd = -1;
        this->prot = PROT_READ | PROT_WRITE;
        flags = MAP_ANON | MAP_PRIVATE;
        // An offset means nothing to anonymous memory, and an unaligned one
        // would only make the mapping fail.
        offset = 0;
    }

    this->size = size;
    void* p = fd < 0 ? map_anonymous(size, this->prot)
                     : ::mmap(nullptr, size, this->prot, flags, fd, static_cast<off_t>(offset));
    if (p == MAP_FAILED) {
        // A failed map (size 0 among others) is not storage: report it as null
        // so that no caller takes the failure marker for an address.
        deallocate(nullptr);
        return nullptr;
    }
    return p;
}

void* alloc_mmap_unix::reallocate(void* p, unsigned long size, unsigned long long offset)
{
    void* q = ::mmap(p, size, prot, flags, fd, fd < 0 ? 0 : static_cast<off_t>(offset));
    if (q == MAP_FAILED) return nullptr;
    if (p) {
        if (writable()) std::memcpy(q, p, std::min(this->size, size));
        ::munmap(p, this->size);
    }
    this->size = size;
    return q;
}

void alloc_mmap_unix::deallocate(void* p)
{
    if (p) ::munmap(p, size);
    // NOTE: writes went through the mapping, which is gone by now; closing
    // the descriptor can't lose them, and a failure leaves nothing to do.
    if (fd >= 0) static_cast<void>(::close(fd));
    fd = -1;
    size = 0;
}

bool alloc_mmap_unix::writable() const
{
    return (prot & PROT_WRITE) != 0;
}

}  // namespace libutils
