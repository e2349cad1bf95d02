#include "ui/theme/wavelark_style.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QSlider>
#include <QStyleOption>
#include <QToolButton>

namespace {

constexpr qreal kRadius = 6;

/// `weight` of `over` mixed into `under`.
QColor mixed(const QColor& under, const QColor& over, qreal weight) {
    const auto channel = [weight](qreal a, qreal b) { return a + (b - a) * weight; };
    return QColor::fromRgbF(channel(under.redF(), over.redF()),
                            channel(under.greenF(), over.greenF()),
                            channel(under.blueF(), over.blueF()));
}

void fillRounded(QPainter* painter, const QRectF& rect, const QColor& fill, qreal radius) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(rect, radius, radius);
    painter->restore();
}

void outlineRounded(QPainter* painter, const QRectF& rect, const QPen& pen, qreal radius) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    const qreal inset = pen.widthF() / 2;
    painter->drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    painter->restore();
}

QColor focusColor(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Link);
}

bool has(const QStyleOption* option, QStyle::StateFlag flag) {
    return option->state.testFlag(flag);
}

QColor buttonFill(const QStyleOption* option, const QWidget* widget) {
    const QPalette& palette = option->palette;
    const QColor text = palette.color(QPalette::ButtonText);
    QColor fill = palette.color(QPalette::Button);
    const bool isEnabled = has(option, QStyle::State_Enabled);
    if (widget != nullptr && isEnabled) {
        if (widget->property(WavelarkStyle::kRecordingProperty).toBool()) {
            fill = accentsFor(palette).recording;
        } else if (widget->property(WavelarkStyle::kFilledProperty).toBool()) {
            fill = palette.color(QPalette::Highlight);
        }
    }
    if (has(option, QStyle::State_Sunken)) {
        return mixed(fill, text, 0.18);
    }
    if (has(option, QStyle::State_MouseOver) && isEnabled) {
        return mixed(fill, text, 0.08);
    }
    return fill;
}

void drawToolButtonPanel(const QStyleOption* option, QPainter* painter, const QWidget* widget) {
    const bool isFilled =
        widget != nullptr && (widget->property(WavelarkStyle::kRecordingProperty).toBool() ||
                              widget->property(WavelarkStyle::kFilledProperty).toBool());
    const bool isLit = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken) ||
                       has(option, QStyle::State_On);
    if (isFilled || isLit) {
        fillRounded(painter, option->rect, buttonFill(option, widget), kRadius);
    }
    if (has(option, QStyle::State_HasFocus)) {
        outlineRounded(painter, option->rect, QPen(focusColor(option->palette), 2), kRadius);
    }
}

void drawLineEditPanel(const QStyleOption* option, QPainter* painter) {
    const QPalette& palette = option->palette;
    fillRounded(painter, option->rect, palette.color(QPalette::Base), kRadius);
    const bool hasFocus = has(option, QStyle::State_HasFocus);
    const QPen pen(hasFocus ? focusColor(palette) : accentsFor(palette).line, hasFocus ? 2 : 1);
    outlineRounded(painter, option->rect, pen, kRadius);
}

void drawItemPanel(const QStyleOption* option, QPainter* painter) {
    const QPalette& palette = option->palette;
    const QRectF rect = QRectF(option->rect).adjusted(4, 1, -4, -1);
    if (has(option, QStyle::State_Selected)) {
        const bool isActive = has(option, QStyle::State_Active);
        const QColor highlight = palette.color(QPalette::Highlight);
        fillRounded(painter,
                    rect,
                    isActive ? highlight : mixed(palette.color(QPalette::Base), highlight, 0.85),
                    kRadius);
    } else if (has(option, QStyle::State_MouseOver)) {
        fillRounded(painter,
                    rect,
                    mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.07),
                    kRadius);
    }
}

void drawSlider(const QStyleOptionSlider* option,
                QPainter* painter,
                const QRect& groove,
                const QRect& handle) {
    const QPalette& palette = option->palette;
    const bool isEnabled = has(option, QStyle::State_Enabled);
    const QColor accent =
        palette.color(isEnabled ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
    constexpr qreal kGroove = 4;
    const qreal middle = QRectF(groove).center().y();
    const QRectF track(groove.left(), middle - kGroove / 2, groove.width(), kGroove);
    fillRounded(painter,
                track,
                mixed(palette.color(QPalette::Window), palette.color(QPalette::Text), 0.25),
                kGroove / 2);
    const qreal x = QRectF(handle).center().x();
    const QRectF filled = option->upsideDown
                              ? QRectF(x, track.top(), track.right() - x, kGroove)
                              : QRectF(track.left(), track.top(), x - track.left(), kGroove);
    fillRounded(painter, filled, accent, kGroove / 2);
    const QRectF knob(x - 7, middle - 7, 14, 14);
    fillRounded(painter, knob, accent, 7);
    if (has(option, QStyle::State_HasFocus)) {
        outlineRounded(painter, knob.adjusted(-3, -3, 3, 3), QPen(focusColor(palette), 2), 10);
    }
}

} // namespace

WavelarkStyle::WavelarkStyle(ThemeChoice choice)
    : QProxyStyle(QStringLiteral("Fusion")), m_choice(choice) {}

void WavelarkStyle::install(ThemeChoice choice) {
    // A new style makes the application ask for its base palette again, which polish() answers.
    QApplication::setStyle(new WavelarkStyle(choice)); // owned by the application
}

void WavelarkStyle::polish(QPalette& palette) {
    // The palette given is the system's: it decides where the user has not.
    const bool dark =
        m_choice == ThemeChoice::Dark || (m_choice == ThemeChoice::System && isDark(palette));
    palette = dark ? darkPalette() : lightPalette();
}

void WavelarkStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) != nullptr ||
        qobject_cast<QSlider*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void WavelarkStyle::drawPrimitive(PrimitiveElement element,
                                  const QStyleOption* option,
                                  QPainter* painter,
                                  const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        outlineRounded(painter, option->rect, QPen(focusColor(option->palette), 2), kRadius);
        return;
    case PE_PanelButtonTool:
        drawToolButtonPanel(option, painter, widget);
        return;
    case PE_PanelButtonCommand:
        fillRounded(painter, option->rect, buttonFill(option, widget), kRadius);
        return;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        drawLineEditPanel(option, painter);
        return;
    case PE_PanelItemViewItem:
        drawItemPanel(option, painter);
        return;
    case PE_PanelItemViewRow:
        return; // the item's own panel is enough
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void WavelarkStyle::drawControl(ControlElement element,
                                const QStyleOption* option,
                                QPainter* painter,
                                const QWidget* widget) const {
    const bool isFilled = widget != nullptr && has(option, State_Enabled) &&
                          (widget->property(kFilledProperty).toBool() ||
                           widget->property(kRecordingProperty).toBool());
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && isFilled && button != nullptr) {
        QStyleOptionButton copy = *button;
        copy.palette.setColor(QPalette::ButtonText,
                              option->palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &copy, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void WavelarkStyle::drawComplexControl(ComplexControl control,
                                       const QStyleOptionComplex* option,
                                       QPainter* painter,
                                       const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_Slider && slider != nullptr && slider->orientation == Qt::Horizontal) {
        drawSlider(slider,
                   painter,
                   proxy()->subControlRect(CC_Slider, slider, SC_SliderGroove, widget),
                   proxy()->subControlRect(CC_Slider, slider, SC_SliderHandle, widget));
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int WavelarkStyle::pixelMetric(PixelMetric metric,
                               const QStyleOption* option,
                               const QWidget* widget) const {
    switch (metric) {
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_SliderLength:
        return 20;
    case PM_SliderControlThickness:
    case PM_SliderThickness:
        return 24;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int WavelarkStyle::styleHint(StyleHint hint,
                             const QStyleOption* option,
                             const QWidget* widget,
                             QStyleHintReturn* data) const {
    switch (hint) {
    case SH_Slider_AbsoluteSetButtons: // a click on the volume goes there at once
        return Qt::LeftButton;
    case SH_Slider_PageSetButtons:
        return Qt::NoButton;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QSize WavelarkStyle::sizeFromContents(ContentsType type,
                                      const QStyleOption* option,
                                      const QSize& size,
                                      const QWidget* widget) const {
    const QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_LineEdit:
    case CT_PushButton:
        return {result.width(), qMax(result.height(), 32)};
    default:
        return result;
    }
}
