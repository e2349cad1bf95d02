#include "ui/theme/theme.h"

#include <algorithm>
#include <cmath>

namespace {

struct Tones {
    const char* window;
    const char* base;
    const char* alternateBase;
    const char* text;
    const char* quiet;
    const char* button;
    const char* highlight;
    const char* highlightedText;
    const char* link;
    const char* line;
    const char* disabled;
};

constexpr Tones kLight{"#f4f6f8",
                       "#ffffff",
                       "#f0f3f6",
                       "#1a1f25",
                       "#56606c",
                       "#e9edf1",
                       "#0e6478",
                       "#ffffff",
                       "#0b5a6d",
                       "#d3d9e0",
                       "#8a939e"};
constexpr Tones kDark{"#1c2026",
                      "#14171b",
                      "#191d22",
                      "#e9ebee",
                      "#a5aeba",
                      "#2a3038",
                      "#1d7286",
                      "#ffffff",
                      "#6cc6d8",
                      "#363d46",
                      "#6d7681"};

QColor color(const char* name) {
    return QColor(QLatin1String(name));
}

QPalette paletteOf(const Tones& tones) {
    QPalette palette(color(tones.button), color(tones.window));
    const QColor text = color(tones.text);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, color(tones.base));
    palette.setColor(QPalette::AlternateBase, color(tones.alternateBase));
    palette.setColor(QPalette::ToolTipBase, color(tones.base));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, color(tones.quiet));
    palette.setColor(QPalette::BrightText, text);
    palette.setColor(QPalette::Highlight, color(tones.highlight));
    palette.setColor(QPalette::HighlightedText, color(tones.highlightedText));
    palette.setColor(QPalette::Link, color(tones.link));
    palette.setColor(QPalette::LinkVisited, color(tones.link));
    palette.setColor(QPalette::Mid, color(tones.line));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, color(tones.disabled));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, color(tones.line));
    return palette;
}

double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

// WCAG 2.1, relative luminance.
double luminance(const QColor& c) {
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

} // namespace

ThemeChoice themeFromText(const QString& text) {
    if (text.compare(QLatin1String("light"), Qt::CaseInsensitive) == 0) {
        return ThemeChoice::Light;
    }
    if (text.compare(QLatin1String("dark"), Qt::CaseInsensitive) == 0) {
        return ThemeChoice::Dark;
    }
    return ThemeChoice::System;
}

QString themeToText(ThemeChoice choice) {
    switch (choice) {
    case ThemeChoice::Light:
        return QStringLiteral("light");
    case ThemeChoice::Dark:
        return QStringLiteral("dark");
    case ThemeChoice::System:
        break;
    }
    return QStringLiteral("system");
}

bool isDark(const QPalette& palette) {
    return luminance(palette.color(QPalette::Window)) <
           luminance(palette.color(QPalette::WindowText));
}

QPalette lightPalette() {
    return paletteOf(kLight);
}

QPalette darkPalette() {
    return paletteOf(kDark);
}

const Accents& accentsFor(const QPalette& palette) {
    static const Accents light{color("#c22b2b"),
                               color("#ffffff"),
                               color("#b3201f"),
                               color("#fbe7e6"),
                               color(kLight.line),
                               color(kLight.quiet)};
    static const Accents dark{color("#c93a35"),
                              color("#ffffff"),
                              color("#ff8f86"),
                              color("#3a2323"),
                              color(kDark.line),
                              color(kDark.quiet)};
    return isDark(palette) ? dark : light;
}

double contrastRatio(const QColor& a, const QColor& b) {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}
