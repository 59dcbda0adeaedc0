// Drawable scene nodes: a small retained tree over GL's current matrix, in
// which transform nodes change the matrix for one child and a container
// keeps its children from disturbing each other.
#ifndef ZANOVIEW_GL_NODES_H
#define ZANOVIEW_GL_NODES_H

#include <vector>

#include "glext/glext.h"

#include "geometry/matrix.h"
#include "geometry/rotation.h"
#include "geometry/vector.h"

namespace libgr {

// One GL call each, with the value's fields spread out.
void grRotate(rotation3_t const& r);     // glRotatef(angle, x, y, z)
void grScale(direction3_t const& s);     // glScalef
void grTranslate(position3_t const& p);  // glTranslatef
void grMultMatrix(matrix3w_t const& m);  // glMultMatrixf on the 16 floats

// Anything that can be drawn.
class grDrawable3D {
public:
    virtual void Draw() = 0;
    virtual ~grDrawable3D();
};

// A node of the tree. Nodes implement the constant Draw alone and the tree
// is walked through it; the other form only forwards, for callers holding a
// plain grDrawable3D. Nodes point at their children and own none of them.
class grObject3D : public grDrawable3D {
public:
    void Draw() override;
    ~grObject3D() override;
    virtual void Draw() const = 0;
};

// The transform nodes below apply their transform to the current matrix,
// then draw the child. They save nothing: the transform stays for whatever
// is drawn after them, unless a container above bounds it. Without a child
// they do nothing at all, the transform included.

class grRotater : public grObject3D {
public:
    using grObject3D::Draw;
    ~grRotater() override;
    void Draw() const override;

    grObject3D const* getObject() const { return m_object; }
    void setObject(grObject3D const* object) { m_object = object; }

private:
    grObject3D const* m_object = nullptr;

public:
    rotation3_t m_rotation = Irot;
};

// Scales by powers of two, one exponent per axis: setZoom((1, 2, 0)) scales
// by (2, 4, 1), and a following addZoom((1, 0, 0)) by (4, 4, 1).
class grZoomer : public grObject3D {
public:
    using grObject3D::Draw;
    ~grZoomer() override;
    void Draw() const override;

    grObject3D const* getObject() const { return m_object; }
    void setObject(grObject3D const* object) { m_object = object; }
    void addZoom(direction3_t const& d);
    void setZoom(direction3_t const& d);
    direction3_t const& getZoom() const { return m_zoom; }
    direction3_t const& getScale() const { return m_scale; }

private:
    grObject3D const* m_object = nullptr;
    direction3_t m_zoom = Idir;               // exponents, base 2
    direction3_t m_scale = direction3(2.0f);  // kept equal to 2 ^ m_zoom
};

class grTranslater : public grObject3D {
public:
    using grObject3D::Draw;
    ~grTranslater() override;
    void Draw() const override;

    grObject3D const* getObject() const { return m_object; }
    void setObject(grObject3D const* object) { m_object = object; }

private:
    grObject3D const* m_object = nullptr;

public:
    position3_t m_position = Ipos;
};

// Multiplies the current matrix by m_matrix, so that the child's own
// transforms act first: a translater below it moves in the child's space.
class grTransformer : public grObject3D {
public:
    using grObject3D::Draw;
    ~grTransformer() override;
    void Draw() const override;

    void setObject(grObject3D const* object) { m_object = object; }

private:
    grObject3D const* m_object = nullptr;

public:
    matrix3w_t m_matrix = Imtx;  // read and written in place by its users
};

// Draws its children in the order they were added, each under a saved
// modelview matrix. A null child is allowed and draws nothing, but still
// costs the push and the pop.
class grContainer : public grObject3D {
public:
    using grObject3D::Draw;
    ~grContainer() override;
    void Draw() const override;

    void addObject(grObject3D const* object) { m_objects.push_back(object); }
    // Counted from 0; null when there are fewer: getObject(5) of 2 is null.
    grObject3D const* getObject(unsigned long n) const;
    void clear() { m_objects.clear(); }
    unsigned long size() const { return m_objects.size(); }
    // New places hold null.
    void resize(unsigned long n) { m_objects.resize(n, nullptr); }

private:
    std::vector<grObject3D const*> m_objects;
};

}  // namespace libgr

#endif
