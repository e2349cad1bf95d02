#include "ui/widgets/row_list_view.h"

#include "ui/theme/theme.h"

#include <QKeyEvent>
#include <QPainter>

RowListView::RowListView(QWidget* parent) : QListView(parent) {
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true); // long lists: one row is measured, not all
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(true);
    connect(this, &QListView::doubleClicked, this, &RowListView::sig_opened);
}

void RowListView::setEmptyText(const QString& text) {
    m_emptyText = text;
    viewport()->update();
}

void RowListView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        emit sig_copyRequested();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (currentIndex().isValid()) {
            emit sig_opened(currentIndex());
        }
        return;
    case Qt::Key_Delete:
        emit sig_removeRequested();
        return;
    case Qt::Key_Space:
        event->ignore(); // the window plays and stops with it
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void RowListView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    const bool isEmpty = model() == nullptr || model()->rowCount() == 0;
    QPainter painter(viewport());
    if (isEmpty) {
        painter.setPen(accentsFor(palette()).quietText);
        painter.drawText(viewport()->rect().adjusted(24, 24, -24, -24),
                         static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap,
                         m_emptyText);
        if (hasFocus()) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(palette().color(QPalette::Link), 2));
            painter.drawRoundedRect(viewport()->rect().adjusted(3, 3, -4, -4), 6, 6);
        }
    }
}
