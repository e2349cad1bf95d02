#include "ui/dialogs/form_fields.h"

#include <QCheckBox>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

QSpinBox*
addNumber(QFormLayout* form, const char* name, const QString& label, int least, int most) {
    auto* box = addField<QSpinBox>(form, name, label);
    box->setRange(least, most);
    return box;
}

QCheckBox* addCheck(QVBoxLayout* layout, const char* name, const QString& text) {
    auto* box = new QCheckBox(text);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(
        QString(text).remove(QLatin1Char('&')).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    layout->addWidget(box);
    return box;
}

QLabel* quietText(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void choose(QComboBox* box, const QVariant& data) {
    const int index = box->findData(data, Qt::UserRole, Qt::MatchFixedString);
    box->setCurrentIndex(index);
}
