#pragma once

#include <QIcon>
#include <QString>

/// Which colour of the palette an icon takes; it follows the palette when that changes.
enum class IconTone {
    Text,      ///< the text colour; that of highlighted text where the item is selected
    OnAccent,  ///< on a filled button
    Recording, ///< the recording colour
    Error,     ///< the error colour
    Quiet,     ///< the colour of second lines
};

/// One of the one-coloured drawings of resources/icons by its name without ending. An unknown name
/// gives a null icon, which is fatal in tests. The icon's name() is this name. Thread: GUI.
QIcon icon(const QString& name, IconTone tone = IconTone::Text);

/// The program's own icon.
QIcon applicationIcon();

/// Makes the compiled-in pictures known; called once before the first icon.
void registerResources();
