#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class IconPainter;

// Every image of the workbench's resource file: its path there, its pixel size (twice the size
// it is shown at) and how to draw it. Animations are drawn frame by frame from a phase in [0, 1).
class IconCatalog
{
public:
    struct Icon
    {
        QString path;
        int size = 0;
        std::function<void(IconPainter&)> draw;
    };
    struct Animation
    {
        QString path;
        int size = 0;
        int frames = 0;
        int delayCentiseconds = 0;
        std::function<void(IconPainter&, qreal)> draw;
    };

    IconCatalog();

    const QList<Icon>& icons() const { return m_icons; }
    const QList<Animation>& animations() const { return m_animations; }
    QStringList paths() const;

    // Renders everything below `resourceDir`; returns the paths written.
    QStringList writeAll(const QString& resourceDir) const;

private:
    void addHostIcons();
    void addToolPageIcons();
    void addFilePanelIcons();
    void addMachineStatusIcons();
    void addVerificationIcons();

    QList<Icon> m_icons;
    QList<Animation> m_animations;
};
