// Allocators behind the shared arrays: one on the free store, one that maps
// a file (or anonymous memory) with mmap.
#ifndef ZANOVIEW_UTILS_ALLOC_H
#define ZANOVIEW_UTILS_ALLOC_H

namespace libutils {

// Protection of a mapping. Other values are refused by alloc_mmap_unix, so a
// value read from elsewhere is cast in and checked there: e_prot_t(2) fails.
enum e_prot_t : int {
    PROTECT_READ = 0,
    PROTECT_READWRITE = 1,
};

// A platform context handed down by callers and forwarded untouched; nothing
// here looks into it, so it is only declared. Pass nullptr.
struct android_app;

// The text of an allocation failure. Failures are told by null results, so
// nothing prints it; it is kept for callers that want one wording.
extern char const memory_error[];

// Every allocator has the same three operations:
//   allocate(size, path, prot, offset, app): storage of `size` bytes, null on
//     failure. With a `path` the storage holds that file's bytes from
//     `offset` on; a `size` of 0 then means all of them, and their count is
//     written back into `size`. A path that can't be read, or an empty file,
//     gives null.
//   reallocate(p, size, offset): new storage of `size` bytes holding the
//     first bytes of `p`; `p` is released on success and kept on failure.
//   deallocate(p): releases what allocate or reallocate gave.
// One allocator object serves one piece of storage at a time: it keeps what
// it needs to release it.

// Storage on the free store; a file is read into it, and zeros stand for
// bytes it lacks. `prot` and `offset` are not looked at.
struct alloc_new {
    unsigned long size = 0;  // bytes

    void* allocate(unsigned long& size, char const* path, e_prot_t prot,
                   unsigned long long offset, android_app* app);
    void* reallocate(void* p, unsigned long size, unsigned long long offset);
    void deallocate(void* p);
    bool writable() const { return true; }
};

// Storage by mmap: a shared mapping of the file at `path` (read-only for
// PROTECT_READ; writes reach the file for PROTECT_READWRITE), or a private
// anonymous read-write mapping without a path, whatever `prot` says.
// A file mapping must lie within the file: a larger `size` is refused.
// NOTE: `offset` must be a multiple of the page size, or the mapping fails.
struct alloc_mmap_unix {
    int fd = -1;              // the open file, -1 for an anonymous mapping
    unsigned long size = 0;   // bytes mapped
    int openmode = 0;         // flags given to open: O_RDONLY or O_RDWR
    int prot = 0;             // PROT_READ, or PROT_READ | PROT_WRITE
    int flags = 0;            // MAP_SHARED for a file, MAP_ANON | MAP_PRIVATE without

    void* allocate(unsigned long& size, char const* path, e_prot_t prot,
                   unsigned long long offset, android_app* app);
    // Always a new mapping (with `p` as a hint only) and always a copy of the
    // bytes both sizes have; a read-only file mapping is remapped and not
    // copied into, as it shows the file's bytes already.
    void* reallocate(void* p, unsigned long size, unsigned long long offset);
    void deallocate(void* p);
    bool writable() const;
};

// Makes sure the C library's heap holds at least `bytes` of free memory that
// is already in place, in huge pages where the system gives them, ahead of
// many allocations made by code we can't reach into: a GL driver that keeps
// textures in this process. Fresh memory would otherwise come in one fault
// for every 4 KiB page it touches, which on a virtual machine costs more
// than filling it. The first call also has blocks below 32 MiB come from the
// heap and freed memory kept for reuse (up to 256 MiB at its end).
void warm_heap(unsigned long bytes);

// Gives the whole pages between `begin` and `end` back to the system. What
// lay there reads as zeros afterwards (as the file's bytes again, in a file
// mapping): for memory whose contents are no longer needed.
void release_pages(void* begin, void* end);

}  // namespace libutils

#endif
