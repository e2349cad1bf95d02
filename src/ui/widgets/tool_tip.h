#pragma once

#include <QString>

/// Texts from outside are never markup, but a tool tip would take them for it.
inline QString plainToolTip(const QString& text) {
    return text.isEmpty() ? QString() : QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}
