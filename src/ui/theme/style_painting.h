#pragma once

#include <QStyleOption>

class QPainter;
class QWidget;

// How the controls of WavelarkStyle are drawn. GUI thread; nothing is kept.

/// Which of a button's looks its view has asked for, by the properties of WavelarkStyle.
enum class ButtonLook { Flat, Raised, Filled, Recording };
ButtonLook buttonLook(const QWidget* widget);

void drawFocusRing(const QStyleOption& option, QPainter& painter);
void drawButtonPanel(const QStyleOption& option, QPainter& painter, const QWidget* widget);
void drawToolButtonPanel(const QStyleOption& option, QPainter& painter, const QWidget* widget);
/// The part behind the thin line of a button with a menu: an arrow.
void drawMenuPart(const QStyleOption& option,
                  QPainter& painter,
                  const QRect& part,
                  ButtonLook look);
void drawCheckBox(const QStyleOption& option, QPainter& painter);
void drawLineEditPanel(const QStyleOption& option, QPainter& painter);
/// Selected in the list that has the keyboard: drawn in the accent colour, with highlighted text.
/// Selected elsewhere is a tint under ordinary text, so that the eye finds the keyboard.
bool isItemStrong(const QStyleOption& option, const QWidget* view);
void drawItemPanel(const QStyleOption& option, QPainter& painter, const QWidget* view);
void drawSlider(const QStyleOptionSlider& option,
                QPainter& painter,
                const QRect& groove,
                const QRect& handle);
void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QRect& handle);
