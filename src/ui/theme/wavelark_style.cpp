#include "ui/theme/wavelark_style.h"

#include "ui/theme/icons.h"
#include "ui/theme/style_painting.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QSlider>
#include <QStyleOption>

#include <algorithm>

namespace {

constexpr char kDesktopDarkProperty[] = "wlDesktopDark";
constexpr int kMenuPart = 20;
constexpr int kScrollBar = 12;
constexpr int kShortestHandle = 32;

/// The handle of a scroll bar that has no arrow buttons.
QRect scrollHandle(const QStyleOptionSlider& bar) {
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const int length = isHorizontal ? bar.rect.width() : bar.rect.height();
    const int range = bar.maximum - bar.minimum;
    int handle = length;
    if (range > 0) {
        handle = static_cast<int>(qint64{length} * bar.pageStep / (qint64{range} + bar.pageStep));
    }
    handle = std::min(length, std::max(handle, kShortestHandle));
    const int start = QStyle::sliderPositionFromValue(
        bar.minimum, bar.maximum, bar.sliderPosition, length - handle, bar.upsideDown);
    return isHorizontal ? QRect(bar.rect.left() + start, bar.rect.top(), handle, bar.rect.height())
                        : QRect(bar.rect.left(), bar.rect.top() + start, bar.rect.width(), handle);
}

QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const QRect handle = scrollHandle(bar);
    QRect before = bar.rect;
    QRect behind = bar.rect;
    if (bar.orientation == Qt::Horizontal) {
        before.setRight(handle.left() - 1);
        behind.setLeft(handle.right() + 1);
    } else {
        before.setBottom(handle.top() - 1);
        behind.setTop(handle.bottom() + 1);
    }
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return handle;
    case QStyle::SC_ScrollBarSubPage:
        return before;
    case QStyle::SC_ScrollBarAddPage:
        return behind;
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    default:
        return {}; // no arrow buttons
    }
}

bool isOnColour(const QStyleOption* option, const QWidget* widget) {
    const ButtonLook look = buttonLook(widget);
    return option->state.testFlag(QStyle::State_Enabled) &&
           (look == ButtonLook::Filled || look == ButtonLook::Recording);
}

} // namespace

WavelarkStyle::WavelarkStyle(ThemeChoice choice)
    : QProxyStyle(QStringLiteral("Fusion")), m_choice(choice) {}

void WavelarkStyle::install(ThemeChoice choice) {
    // A new style makes the application ask for its base palette again, which polish() answers.
    QApplication::setStyle(new WavelarkStyle(choice)); // owned by the application
}

void WavelarkStyle::setDesktopDark(std::optional<bool> isDark) {
    // with the application, so that each style that it is given knows
    qApp->setProperty(kDesktopDarkProperty, isDark ? QVariant(*isDark) : QVariant());
    const auto* const style = qobject_cast<WavelarkStyle*>(QApplication::style());
    if (style != nullptr && style->m_choice == ThemeChoice::System) {
        install(ThemeChoice::System);
    }
}

void WavelarkStyle::polish(QPalette& palette) {
    // The palette given is the system's: it decides where neither user nor desktop has.
    const QVariant desktop = qApp->property(kDesktopDarkProperty);
    const bool isSystemDark = desktop.isValid() ? desktop.toBool() : isDark(palette);
    const bool dark =
        m_choice == ThemeChoice::Dark || (m_choice == ThemeChoice::System && isSystemDark);
    palette = dark ? darkPalette() : lightPalette();
}

void WavelarkStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) != nullptr ||
        qobject_cast<QAbstractSlider*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void WavelarkStyle::drawPrimitive(PrimitiveElement element,
                                  const QStyleOption* option,
                                  QPainter* painter,
                                  const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        drawFocusRing(*option, *painter);
        return;
    case PE_PanelButtonTool:
        drawToolButtonPanel(*option, *painter, widget);
        return;
    case PE_PanelButtonCommand:
        drawButtonPanel(*option, *painter, widget);
        return;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        drawLineEditPanel(*option, *painter);
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        drawCheckBox(*option, *painter);
        return;
    case PE_PanelItemViewItem:
        drawItemPanel(*option, *painter, widget);
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
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && button != nullptr && isOnColour(option, widget)) {
        QStyleOptionButton copy = *button;
        copy.palette.setColor(QPalette::ButtonText,
                              option->palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &copy, painter, widget);
        return;
    }
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element == CE_ItemViewItem && item != nullptr && !isItemStrong(*item, widget)) {
        // a pale selection bears the usual ink
        QStyleOptionViewItem copy = *item;
        copy.palette.setColor(QPalette::HighlightedText, item->palette.color(QPalette::Text));
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
    const auto* tool = qstyleoption_cast<const QStyleOptionToolButton*>(option);
    if (control == CC_Slider && slider != nullptr) {
        drawSlider(*slider,
                   *painter,
                   proxy()->subControlRect(CC_Slider, slider, SC_SliderGroove, widget),
                   proxy()->subControlRect(CC_Slider, slider, SC_SliderHandle, widget));
    } else if (control == CC_ScrollBar && slider != nullptr) {
        drawScrollBar(*slider, *painter, scrollHandle(*slider));
    } else if (control == CC_ToolButton && tool != nullptr &&
               tool->features.testFlag(QStyleOptionToolButton::MenuButtonPopup)) {
        drawMenuButton(*tool, *painter, widget);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

void WavelarkStyle::drawMenuButton(const QStyleOptionToolButton& option,
                                   QPainter& painter,
                                   const QWidget* widget) const {
    drawToolButtonPanel(option, painter, widget);
    QStyleOptionToolButton label = option;
    label.rect = proxy()->subControlRect(CC_ToolButton, &option, SC_ToolButton, widget);
    proxy()->drawControl(CE_ToolButtonLabel, &label, &painter, widget);
    drawMenuPart(option,
                 painter,
                 proxy()->subControlRect(CC_ToolButton, &option, SC_ToolButtonMenu, widget),
                 buttonLook(widget));
}

QRect WavelarkStyle::subControlRect(ComplexControl control,
                                    const QStyleOptionComplex* option,
                                    SubControl part,
                                    const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && bar != nullptr) {
        return visualRect(bar->direction, bar->rect, scrollBarPart(*bar, part));
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QIcon WavelarkStyle::standardIcon(StandardPixmap which,
                                  const QStyleOption* option,
                                  const QWidget* widget) const {
    if (which == SP_LineEditClearButton) {
        return icon(QStringLiteral("clear"), IconTone::Quiet);
    }
    return QProxyStyle::standardIcon(which, option, widget);
}

int WavelarkStyle::pixelMetric(PixelMetric metric,
                               const QStyleOption* option,
                               const QWidget* widget) const {
    switch (metric) {
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_MenuButtonIndicator:
        return kMenuPart;
    case PM_ScrollBarExtent:
        return kScrollBar;
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
    case SH_DialogButtonBox_ButtonsHaveIcons: // words say it; the style's pictures are not ours
        return 0;
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
        return {result.width(), std::max(result.height(), 32)};
    case CT_PushButton:
        return {result.width() + 16, std::max(result.height(), 32)};
    default:
        return result;
    }
}
