#pragma once

#include <QString>
#include <QStringList>

// The back and forward list of the folders a panel showed. An empty path stands for the
// local panel's computer view.
class FolderHistory
{
public:
    // Forgets everything but the starting place.
    void Reset(const QString& start);
    // A new place after the current one; what lay ahead of it is dropped.
    void Push(const QString& path);
    // Moves back (negative) or forward; false, and no move, when that leaves the list.
    bool Step(int step);

    QString Current() const { return m_listPaths.value(m_iIndex); }
    QStringList Paths() const { return m_listPaths; }
    int Index() const { return m_iIndex; }
    bool CanGoBack() const { return m_iIndex > 0; }
    bool CanGoForward() const { return m_iIndex < m_listPaths.size() - 1; }

private:
    QStringList m_listPaths{QString()};
    int m_iIndex = 0;
};
