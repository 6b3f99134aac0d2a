#pragma once

#include <QImage>
#include <QStringList>

// One image showing every icon as the program reads it back from disk (every GIF frame
// included), shown at its design size on a light and on the side bar's dark background,
// and enlarged, for checking the set by eye.
class ContactSheet
{
public:
    static QImage compose(const QStringList& files);
};
