#include "KorvFonts.h"

#include <QStringList>

namespace {
QFont makeFont(int pixelSize, QFont::Weight weight)
{
    QFont font;
    // The first family that is installed wins; Debian's CJK fonts cover the Chinese texts.
    font.setFamilies({QStringLiteral("Microsoft YaHei"), QStringLiteral("WenQuanYi Micro Hei"),
                      QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Sans Serif")});
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}
} // namespace

QFont FontCn_13 = makeFont(13, QFont::Normal);
QFont FontCn_14 = makeFont(14, QFont::Normal);
QFont FontCn_15 = makeFont(15, QFont::Normal);
QFont FontCnMedium_11 = makeFont(11, QFont::Medium);
QFont FontCnMedium_12 = makeFont(12, QFont::Medium);
QFont FontCnMedium_13 = makeFont(13, QFont::Medium);
QFont FontCnMedium_14 = makeFont(14, QFont::Medium);
QFont FontCnMedium_15 = makeFont(15, QFont::Medium);
QFont FontCnMedium_16 = makeFont(16, QFont::Medium);
QFont FontCnBold_11 = makeFont(11, QFont::Bold);
QFont FontCnBold_12 = makeFont(12, QFont::Bold);
QFont FontCnBold_13 = makeFont(13, QFont::Bold);
QFont FontCnBold_14 = makeFont(14, QFont::Bold);
QFont FontCnBold_15 = makeFont(15, QFont::Bold);
QFont FontCnBold_16 = makeFont(16, QFont::Bold);
QFont FontCnBold_20 = makeFont(20, QFont::Bold);
