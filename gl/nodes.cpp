#include "gl/nodes.h"

#include "gl/error.h"
#include "gl/matrixmgr.h"

namespace libgr {

void grRotate(rotation3_t const& r) { glRotatef(r.angle, r.axis.x, r.axis.y, r.axis.z); }
void grScale(direction3_t const& s) { glScalef(s.x, s.y, s.z); }
void grTranslate(position3_t const& p) { glTranslatef(p.x, p.y, p.z); }
void grMultMatrix(matrix3w_t const& m) { glMultMatrixf(m.data()); }

grDrawable3D::~grDrawable3D() = default;

void grObject3D::Draw()
{
    static_cast<grObject3D const*>(this)->Draw();
}

grObject3D::~grObject3D() = default;

// ------------------------------------------------------------ transforms

grRotater::~grRotater() = default;

void grRotater::Draw() const
{
    if (!m_object) return;
    grRotate(m_rotation);
    m_object->Draw();
}

grZoomer::~grZoomer() = default;

void grZoomer::Draw() const
{
    if (!m_object) return;
    grScale(m_scale);
    m_object->Draw();
}

void grZoomer::addZoom(direction3_t const& d)
{
    m_zoom += d;
    m_scale = pow(direction3(2.0f), m_zoom);
}

void grZoomer::setZoom(direction3_t const& d)
{
    m_zoom = d;
    m_scale = pow(direction3(2.0f), m_zoom);
}

grTranslater::~grTranslater() = default;

void grTranslater::Draw() const
{
    if (!m_object) return;
    grPrintError("grTranslater::Draw() - before translate.");
    grTranslate(m_position);
    grPrintError("grTranslater::Draw() - after translate.");
    m_object->Draw();
    grPrintError("grTranslater::Draw() - after m_object->Draw().");
}

grTransformer::~grTransformer() = default;

void grTransformer::Draw() const
{
    if (!m_object) return;
    grPrintError("grTransformer::Draw() - before MultMatrix()");
    grMultMatrix(m_matrix);
    grPrintError("grTransformer::Draw() - after MultMatrix()");
    m_object->Draw();
    grPrintError("grTransformer::Draw() - after m_object->Draw()");
}

// ------------------------------------------------------------- container

grContainer::~grContainer() = default;

void grContainer::Draw() const
{
    for (grObject3D const* object : m_objects) {
        grMatrixPusher keep(GL_MODELVIEW);
        if (object) object->Draw();
    }
}

grObject3D const* grContainer::getObject(unsigned long n) const
{
    return n < m_objects.size() ? m_objects[n] : nullptr;
}

}  // namespace libgr
