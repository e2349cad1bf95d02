#include "ui/theme/icons.h"

#include "base/check.h"
#include "ui/theme/theme.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

// Q_INIT_RESOURCE must stand outside of every namespace.
static void initBundles() {
    Q_INIT_RESOURCE(wavelark_icons);
    Q_INIT_RESOURCE(wavelark_app);
}

namespace {

QColor toneColor(IconTone tone, QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    const Accents& accents = accentsFor(palette);
    if (mode == QIcon::Disabled) {
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    }
    if (mode == QIcon::Selected) {
        return palette.color(QPalette::HighlightedText);
    }
    switch (tone) {
    case IconTone::OnAccent:
        return palette.color(QPalette::HighlightedText);
    case IconTone::Recording:
        return accents.recording;
    case IconTone::Error:
        return accents.error;
    case IconTone::Quiet:
        return accents.quietText;
    case IconTone::Text:
        break;
    }
    return palette.color(QPalette::ButtonText);
}

/// Draws an SVG; where it has a tone, its shape in the colour that the palette has at that moment.
class SvgIconEngine final : public QIconEngine {
  public:
    SvgIconEngine(QString path, bool isToned, IconTone tone)
        : m_path(std::move(path)), m_isToned(isToned), m_tone(tone) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QPixmap picture = render(rect.size() * ratio, mode);
        picture.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect.topLeft(), picture);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return render(size, mode);
    }

    [[nodiscard]] QIconEngine* clone() const override {
        return new SvgIconEngine(m_path, m_isToned, m_tone); // owned by the icon that asked
    }

    [[nodiscard]] QString iconName() const override { return QFileInfo(m_path).completeBaseName(); }

  private:
    [[nodiscard]] QPixmap render(const QSize& size, QIcon::Mode mode) const {
        const QColor color = toneColor(m_tone, mode);
        const QString key = QStringLiteral("wl:%1:%2x%3:%4")
                                .arg(m_path)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(m_isToned ? color.rgba() : 0);
        QPixmap picture;
        if (QPixmapCache::find(key, &picture)) {
            return picture;
        }
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        QSvgRenderer(m_path).render(&painter);
        if (m_isToned) {
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(picture.rect(), color);
        }
        painter.end();
        QPixmapCache::insert(key, picture);
        return picture;
    }

    QString m_path;
    bool m_isToned;
    IconTone m_tone;
};

} // namespace

QIcon icon(const QString& name, IconTone tone) {
    const QString path = QStringLiteral(":/icons/%1.svg").arg(name);
    if (!WL_CHECK(QFile::exists(path))) {
        return {};
    }
    return QIcon(new SvgIconEngine(path, true, tone)); // owned by the icon
}

QIcon applicationIcon() {
    return QIcon(new SvgIconEngine(QStringLiteral(":/app/wavelark.svg"), false, IconTone::Text));
}

void registerResources() {
    initBundles();
}
