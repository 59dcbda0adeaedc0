// Display lists: a node whose drawing is compiled once into a GL list and
// replayed, with the list name shared by every copy of the node.
#ifndef ZANOVIEW_GL_DSPLIST_H
#define ZANOVIEW_GL_DSPLIST_H

#include "glext/glext.h"

#include "gl/nodes.h"
#include "utils/refobject.h"

namespace libgr {

// Owns one GL display list name; the destructor deletes the list, so the
// last owner must go while a context is current.
class grDspListMgr {
public:
    grDspListMgr() = default;
    ~grDspListMgr();
    grDspListMgr(grDspListMgr const&) = delete;
    grDspListMgr& operator=(grDspListMgr const&) = delete;

    // A new name unless one is held: a second call keeps the first name.
    void Generate();
    // Deletes the list. A later Generate takes a new name.
    void Release();
    bool isGenerated() const { return m_generated; }
    // The name while generated; otherwise 1281, GL_INVALID_ENUM's number,
    // never 0, so test isGenerated() rather than this value.
    GLuint listname() const;

private:
    GLuint m_listname = 0;
    bool m_generated = false;
};

// A node that replays what Preload compiled. Copies share one manager, and
// so one list: Unload through any copy unloads them all, and the list is
// deleted only with the last copy (which needs a current context then).
//   Empty --Preload--> Compiled --Unload--> Unloaded --Preload--> Compiled
// Drawing is a no-op except when compiled.
class grDspList : public grObject3D {
public:
    grDspList() = default;
    grDspList(grDspList const&) = default;
    grDspList& operator=(grDspList const&) = default;
    ~grDspList() override;

    using grObject3D::Draw;
    void Draw() const override;

    // Compiles `object`'s drawing (nothing for null) into the list, over the
    // name the list already has, if any. GL calls are recorded, not run, so
    // the object's own error checks see nothing of them. Always true.
    bool Preload(grObject3D const* object);
    // Deletes the GL list; the shared manager stays for the next Preload.
    void Unload();
    // The list's GL name, 0 while none is generated.
    GLuint listname() const;

private:
    libutils::refobject<grDspListMgr> m_list;  // null until the first Preload
};

}  // namespace libgr

#endif
