#pragma once

#include "KorvControlsExport.h"

#include <QIcon>
#include <QToolButton>

// A large tool button, icon above text. Its alternate icon shows while it is checked or held down,
// so the highlighted state reads at a glance.
class KORVCONTROLS_EXPORT CToolButton : public QToolButton
{
    Q_OBJECT

public:
    CToolButton(const QString& iconPath, const QString& text, const QString& alternateIconPath,
                QWidget* parent = nullptr);

    QString IconPath() const { return m_strIconPath; }
    QString AlternateIconPath() const { return m_strAlternateIconPath; }

private:
    void UpdateIcon();

    QString m_strIconPath;
    QString m_strAlternateIconPath;
    QIcon m_iconNormal;
    QIcon m_iconAlternate;
};
