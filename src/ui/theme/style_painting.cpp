#include "ui/theme/style_painting.h"

#include "ui/theme/theme.h"
#include "ui/theme/wavelark_style.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

constexpr qreal kRadius = 6;

/// `weight` of `over` mixed into `under`.
QColor mixed(const QColor& under, const QColor& over, qreal weight) {
    const auto channel = [weight](qreal a, qreal b) { return a + (b - a) * weight; };
    return QColor::fromRgbF(channel(under.redF(), over.redF()),
                            channel(under.greenF(), over.greenF()),
                            channel(under.blueF(), over.blueF()));
}

void fillRounded(QPainter& painter, const QRectF& rect, const QColor& fill, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void outlineRounded(QPainter& painter, const QRectF& rect, const QPen& pen, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const qreal inset = pen.widthF() / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.restore();
}

QPen focusPen(const QPalette& palette) {
    return {palette.color(QPalette::Active, QPalette::Link), 2};
}

bool has(const QStyleOption& option, QStyle::StateFlag flag) {
    return option.state.testFlag(flag);
}

QColor buttonFill(const QStyleOption& option, ButtonLook look) {
    const QPalette& palette = option.palette;
    const QColor text = palette.color(QPalette::ButtonText);
    QColor fill = palette.color(QPalette::Button);
    const bool isEnabled = has(option, QStyle::State_Enabled);
    if (isEnabled && look == ButtonLook::Recording) {
        fill = accentsFor(palette).recording;
    } else if (isEnabled && look == ButtonLook::Filled) {
        fill = palette.color(QPalette::Highlight);
    }
    if (has(option, QStyle::State_Sunken)) {
        return mixed(fill, text, 0.18);
    }
    if (has(option, QStyle::State_MouseOver) && isEnabled) {
        return mixed(fill, text, 0.08);
    }
    return fill;
}

} // namespace

ButtonLook buttonLook(const QWidget* widget) {
    if (widget == nullptr) {
        return ButtonLook::Flat;
    }
    if (widget->property(WavelarkStyle::kRecordingProperty).toBool()) {
        return ButtonLook::Recording;
    }
    if (widget->property(WavelarkStyle::kFilledProperty).toBool()) {
        return ButtonLook::Filled;
    }
    return widget->property(WavelarkStyle::kRaisedProperty).toBool() ? ButtonLook::Raised
                                                                     : ButtonLook::Flat;
}

void drawFocusRing(const QStyleOption& option, QPainter& painter) {
    outlineRounded(painter, option.rect, focusPen(option.palette), kRadius);
}

void drawButtonPanel(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    fillRounded(painter, option.rect, buttonFill(option, buttonLook(widget)), kRadius);
}

void drawToolButtonPanel(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    const bool isLit = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken) ||
                       has(option, QStyle::State_On);
    if (isLit || buttonLook(widget) != ButtonLook::Flat) {
        drawButtonPanel(option, painter, widget);
    }
    if (has(option, QStyle::State_HasFocus)) {
        // Inside of the fill, with a gap, so that it is seen on every colour.
        const QRectF inner = QRectF(option.rect).adjusted(2, 2, -2, -2);
        const bool isColoured =
            buttonLook(widget) == ButtonLook::Filled || buttonLook(widget) == ButtonLook::Recording;
        const QPen pen = isColoured ? QPen(option.palette.color(QPalette::HighlightedText), 2)
                                    : focusPen(option.palette);
        outlineRounded(painter, inner, pen, kRadius - 2);
    }
}

void drawMenuPart(const QStyleOption& option,
                  QPainter& painter,
                  const QRect& part,
                  ButtonLook look) {
    const bool isOnColour = look == ButtonLook::Filled || look == ButtonLook::Recording;
    const QColor ink = option.palette.color(
        has(option, QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled,
        isOnColour ? QPalette::HighlightedText : QPalette::ButtonText);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(part);
    QColor thin = ink;
    thin.setAlphaF(0.35);
    painter.setPen(QPen(thin, 1));
    painter.drawLine(QPointF(area.left() + 0.5, area.top() + 10),
                     QPointF(area.left() + 0.5, area.bottom() - 10));
    painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF middle = area.center() + QPointF(0, 1);
    const QPointF arrow[] = {
        middle + QPointF(-3.5, -2), middle + QPointF(0, 1.5), middle + QPointF(3.5, -2)};
    painter.drawPolyline(arrow, 3);
    painter.restore();
}

void drawLineEditPanel(const QStyleOption& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (frame != nullptr && frame->lineWidth <= 0) { // inside of another field, which has its own
        painter.fillRect(option.rect, palette.color(QPalette::Base));
        return;
    }
    fillRounded(painter, option.rect, palette.color(QPalette::Base), kRadius);
    const QPen pen =
        has(option, QStyle::State_HasFocus) ? focusPen(palette) : QPen(accentsFor(palette).line, 1);
    outlineRounded(painter, option.rect, pen, kRadius);
}

void drawCheckBox(const QStyleOption& option, QPainter& painter) {
    constexpr qreal kCorner = 3;
    const QPalette& palette = option.palette;
    const bool isEnabled = has(option, QStyle::State_Enabled);
    const qreal side = std::min(option.rect.width(), option.rect.height());
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(option.rect).center());
    const QColor base = palette.color(QPalette::Base);
    const QColor ink = palette.color(QPalette::Text); // paler by itself where disabled
    const bool isOff = has(option, QStyle::State_Off);
    const QColor fill = isOff || !isEnabled
                            ? mixed(base, ink, has(option, QStyle::State_MouseOver) ? 0.1 : 0.0)
                            : palette.color(QPalette::Active, QPalette::Highlight);
    fillRounded(painter, box, fill, kCorner);
    if (isOff || !isEnabled)
        outlineRounded(painter, box, QPen(mixed(base, ink, 0.6), 1), kCorner);
    if (isOff)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isEnabled ? palette.color(QPalette::HighlightedText) : ink,
                        1.8,
                        Qt::SolidLine,
                        Qt::RoundCap,
                        Qt::RoundJoin));
    const auto at = [&box](qreal x, qreal y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    const QPointF tick[] = {at(0.24, 0.54), at(0.43, 0.72), at(0.77, 0.3)};
    const QPointF partly[] = {at(0.25, 0.5), at(0.75, 0.5)};
    if (has(option, QStyle::State_NoChange))
        painter.drawPolyline(partly, 2);
    else
        painter.drawPolyline(tick, 3);
    painter.restore();
}

bool isItemStrong(const QStyleOption& option, const QWidget* view) {
    return has(option, QStyle::State_Selected) && view != nullptr && view->hasFocus();
}

void drawItemPanel(const QStyleOption& option, QPainter& painter, const QWidget* view) {
    const QPalette& palette = option.palette;
    const QColor base = palette.color(QPalette::Base);
    const QRectF rect = QRectF(option.rect).adjusted(4, 1, -4, -1);
    if (has(option, QStyle::State_Selected)) {
        const qreal weight = isItemStrong(option, view) ? 1.0 : isDark(palette) ? 0.35 : 0.15;
        fillRounded(painter,
                    rect,
                    mixed(base, palette.color(QPalette::Active, QPalette::Highlight), weight),
                    kRadius);
    } else if (has(option, QStyle::State_MouseOver)) {
        fillRounded(painter, rect, mixed(base, palette.color(QPalette::Text), 0.07), kRadius);
    }
}

void drawSlider(const QStyleOptionSlider& option,
                QPainter& painter,
                const QRect& groove,
                const QRect& handle) {
    constexpr qreal kGroove = 4;
    const QPalette& palette = option.palette;
    const QColor accent =
        palette.color(has(option, QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled,
                      QPalette::Highlight);
    const bool isUpright = option.orientation == Qt::Vertical;
    const QPointF knobAt = QRectF(handle).center();
    const QPointF middle = QRectF(groove).center();
    // what goes to both sides of nothing is filled from there
    const bool isTwoSided = option.minimum < 0 && option.maximum > 0;
    const bool isFromEnd = isUpright != option.upsideDown;
    const qreal from = isTwoSided  ? (isUpright ? middle.y() : middle.x())
                       : isUpright ? (isFromEnd ? groove.top() : groove.bottom())
                       : isFromEnd ? groove.right()
                                   : groove.left();
    const auto bar = [&](qreal one, qreal other) {
        const qreal start = std::min(one, other);
        const qreal length = std::abs(one - other);
        return isUpright ? QRectF(middle.x() - kGroove / 2, start, kGroove, length)
                         : QRectF(start, middle.y() - kGroove / 2, length, kGroove);
    };
    const QColor rest = mixed(palette.color(QPalette::Window), palette.color(QPalette::Text), 0.25);
    fillRounded(painter,
                isUpright ? bar(groove.top(), groove.bottom()) : bar(groove.left(), groove.right()),
                rest,
                kGroove / 2);
    fillRounded(painter, bar(from, isUpright ? knobAt.y() : knobAt.x()), accent, kGroove / 2);
    const QPointF centre =
        isUpright ? QPointF(middle.x(), knobAt.y()) : QPointF(knobAt.x(), middle.y());
    const QRectF knob(centre.x() - 7, centre.y() - 7, 14, 14);
    fillRounded(painter, knob, accent, 7);
    if (has(option, QStyle::State_HasFocus)) {
        outlineRounded(painter, knob.adjusted(-3, -3, 3, 3), focusPen(palette), 10);
    }
}

void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QRect& handle) {
    const QPalette& palette = option.palette;
    painter.fillRect(option.rect, palette.color(QPalette::Base));
    if (option.minimum == option.maximum) {
        return;
    }
    const bool isLit = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken);
    const QColor color =
        mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), isLit ? 0.55 : 0.40);
    fillRounded(painter, QRectF(handle).adjusted(3, 3, -3, -3), color, 3);
}
