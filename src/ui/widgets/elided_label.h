#pragma once

#include <QLabel>

/// One line of plain text that shortens itself with an ellipsis; the tool tip has all of it where
/// it does not fit. Text written from right to left keeps its side.
class ElidedLabel final : public QLabel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ElidedLabel)

  public:
    enum class Tone { Normal, Strong, Quiet };

    explicit ElidedLabel(Tone tone, QWidget* parent = nullptr);

    void setFullText(const QString& text);
    [[nodiscard]] QString fullText() const { return m_full; }

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void elide();
    void applyTone();

    QString m_full;
    Tone m_tone;
    bool m_isApplyingTone = false;
};
