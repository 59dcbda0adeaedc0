#include "utils/alloc.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cstdlib>
#include <new>
#include <vector>

#include <malloc.h>

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

#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23  // Linux 5.14; older kernels refuse it, which is harmless
#endif

// Brings the writable memory [p, p + size) in at once, in huge pages where
// whole ones fit: one call instead of a fault for every 4 KiB page. Fresh
// pages are dear (on a virtual machine far dearer than the writes that
// touch them), and memory about to be filled anyway loses nothing by being
// there early. Only advice: memory the kernel won't bring in stays good.
void bring_in(void* p, std::uintptr_t size)
{
    std::uintptr_t const start = reinterpret_cast<std::uintptr_t>(p);
    std::uintptr_t const huge_start = (start + kHugePage - 1) & ~(kHugePage - 1);
    std::uintptr_t const huge_end = (start + size) & ~(kHugePage - 1);
    if (huge_end > huge_start)
        ::madvise(reinterpret_cast<void*>(huge_start), huge_end - huge_start, MADV_HUGEPAGE);
    std::uintptr_t const page_start = (start + kPage - 1) & ~(kPage - 1);
    std::uintptr_t const page_end = (start + size) & ~(kPage - 1);
    if (page_end > page_start)
        ::madvise(reinterpret_cast<void*>(page_start), page_end - page_start, MADV_POPULATE_WRITE);
}

// Private anonymous memory; a large block (a decoded photo) on huge-page
// boundaries and brought in at once.
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
    bring_in(p, size);
    return p;
}

}  // namespace

void release_pages(void* begin, void* end)
{
    std::uintptr_t const from = (reinterpret_cast<std::uintptr_t>(begin) + kPage - 1) & ~(kPage - 1);
    std::uintptr_t const to = reinterpret_cast<std::uintptr_t>(end) & ~(kPage - 1);
    if (to > from) ::madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
}

void warm_heap(unsigned long bytes)
{
#if defined(__SANITIZE_ADDRESS__)
    // The sanitizer's allocator is not the C library's: nothing to tune or
    // warm, and freed pieces would only wait in its quarantine.
    (void)bytes;
    return;
#endif
    static bool tuned = false;
    if (!tuned) {
        // Blocks below 32 MiB, the most the C library allows here, come from
        // the heap rather than from mappings of their own that are new
        // pages every time; and freed memory stays for the next picture.
        ::mallopt(M_MMAP_THRESHOLD, 32 << 20);
        ::mallopt(M_TRIM_THRESHOLD, 256 << 20);
        tuned = true;
    }
    struct mallinfo2 const info = ::mallinfo2();
    if (info.fordblks >= bytes) return;
    // Taken in pieces below the threshold, brought in, and given back: the
    // pieces join the heap's free memory, where the next allocations find
    // them.
    constexpr unsigned long kPiece = 16ul << 20;  // bytes
    std::vector<void*> pieces;
    for (unsigned long got = info.fordblks; got < bytes; got += kPiece) {
        void* const piece = std::malloc(kPiece);
        if (!piece) break;
        bring_in(piece, kPiece);
        pieces.push_back(piece);
    }
    for (void* piece : pieces) std::free(piece);
}

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
