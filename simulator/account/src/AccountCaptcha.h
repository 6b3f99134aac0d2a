#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

// Picture codes: random characters drawn rotated and in several colours over lines
// and dots, so that they are read by eye rather than copied as text.
class AccountCaptcha
{
public:
    static constexpr int kLength = 4;
    static constexpr int kWidth = 120;
    static constexpr int kHeight = 40;

    // kLength characters without the easily confused ones (0/O/Q, 1/I/L).
    static QString RandomText();
    static QImage Draw(const QString& text);
    // JPEG bytes of Draw(text); empty if the JPEG writer is missing.
    static QByteArray DrawJpeg(const QString& text);
};
