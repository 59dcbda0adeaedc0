#include "gl/dsplist.h"

namespace libgr {

// ------------------------------------------------------------ grDspListMgr

grDspListMgr::~grDspListMgr()
{
    Release();
}

void grDspListMgr::Generate()
{
    if (m_generated) return;
    m_listname = glGenLists(1 /*range*/);
    m_generated = true;
}

void grDspListMgr::Release()
{
    if (!m_generated) return;
    glDeleteLists(m_listname, 1 /*range*/);
    m_generated = false;
}

GLuint grDspListMgr::listname() const
{
    return m_generated ? m_listname : GLuint(GL_INVALID_ENUM);
}

// --------------------------------------------------------------- grDspList

grDspList::~grDspList() = default;

void grDspList::Draw() const
{
    if (m_list && m_list->isGenerated()) glCallList(m_list->listname());
}

bool grDspList::Preload(grObject3D const* object)
{
    if (!m_list) m_list.create();
    m_list->Generate();
    glNewList(m_list->listname(), GL_COMPILE);
    if (object) object->Draw();
    glEndList();
    return true;
}

void grDspList::Unload()
{
    if (m_list) m_list->Release();
}

GLuint grDspList::listname() const
{
    return m_list && m_list->isGenerated() ? m_list->listname() : 0;
}

}  // namespace libgr
