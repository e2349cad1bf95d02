#pragma once

#include "ui/theme/theme.h"

#include <QProxyStyle>

#include <optional>

class QStyleOptionToolButton;

/// The program's look: Fusion underneath, our palettes, flat rounded controls, a focus ring that is
/// easy to see.
///
/// *Thread*: GUI. *Owner*: the application, once install()ed.
class WavelarkStyle final : public QProxyStyle {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WavelarkStyle)

  public:
    explicit WavelarkStyle(ThemeChoice choice);

    /// Makes it the application's style, or changes the choice of the one that is.
    static void install(ThemeChoice choice);
    /// What the desktop asks for, where it says so; it counts under ThemeChoice::System. Without
    /// it the desktop's palette tells.
    static void setDesktopDark(std::optional<bool> isDark);

    /// Dynamic properties that views set on a button. Raised: with a ground of its own. Filled: in
    /// the accent colour. Recording: in the recording colour.
    static constexpr char kRaisedProperty[] = "wlRaised";
    static constexpr char kFilledProperty[] = "wlFilled";
    static constexpr char kRecordingProperty[] = "wlRecording";

    void polish(QPalette& palette) override;
    void polish(QWidget* widget) override;
    using QProxyStyle::polish;

    void drawPrimitive(PrimitiveElement element,
                       const QStyleOption* option,
                       QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element,
                     const QStyleOption* option,
                     QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control,
                            const QStyleOptionComplex* option,
                            QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control,
                                       const QStyleOptionComplex* option,
                                       SubControl part,
                                       const QWidget* widget) const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap which,
                                     const QStyleOption* option,
                                     const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric,
                                  const QStyleOption* option,
                                  const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint,
                                const QStyleOption* option,
                                const QWidget* widget,
                                QStyleHintReturn* data) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type,
                                         const QStyleOption* option,
                                         const QSize& size,
                                         const QWidget* widget) const override;

  private:
    void drawMenuButton(const QStyleOptionToolButton& option,
                        QPainter& painter,
                        const QWidget* widget) const;

    ThemeChoice m_choice;
};
