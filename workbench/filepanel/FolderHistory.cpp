#include "FolderHistory.h"

void FolderHistory::Reset(const QString& start)
{
    m_listPaths = {start};
    m_iIndex = 0;
}

void FolderHistory::Push(const QString& path)
{
    ++m_iIndex;
    while (m_listPaths.size() > m_iIndex) {
        m_listPaths.removeLast();
    }
    m_listPaths.append(path);
}

bool FolderHistory::Step(int step)
{
    const int target = m_iIndex + step;
    if (target < 0 || target >= m_listPaths.size()) {
        return false;
    }
    m_iIndex = target;
    return true;
}
