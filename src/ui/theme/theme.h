#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

/// Which colours the user asked for.
enum class ThemeChoice { System, Light, Dark };

/// "system", "light", "dark"; any other text is System.
ThemeChoice themeFromText(const QString& text);
QString themeToText(ThemeChoice choice);

/// Colours that a palette has no role for.
struct Accents {
    QColor recording;     ///< fills and icons of a running recording
    QColor recordingText; ///< on `recording`
    QColor error;         ///< text and icon of an error, on Base and Window
    QColor errorBack;     ///< behind the error text of the message bar
    QColor line;          ///< thin lines between areas
    QColor quietText;     ///< second lines; readable on Base and Window (contrast 4.5 and above)
};

bool isDark(const QPalette& palette);
QPalette lightPalette();
QPalette darkPalette();
/// Those that go with a light or a dark palette.
const Accents& accentsFor(const QPalette& palette);

/// WCAG 2.1 contrast ratio, 1 to 21.
double contrastRatio(const QColor& a, const QColor& b);
