#pragma once

#include <QComboBox>
#include <QFormLayout>
#include <QString>
#include <QVariant>

class QCheckBox;
class QLabel;
class QSpinBox;
class QVBoxLayout;

// The building blocks of forms. GUI thread; the layout's widget owns what they make.

/// A field with its label, by which a screen reader calls it.
template <typename Field>
Field* addField(QFormLayout* form, const char* name, const QString& label) {
    auto* field = new Field;
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    form->addRow(label, field);
    return field;
}

QSpinBox* addNumber(QFormLayout* form, const char* name, const QString& label, int least, int most);
QCheckBox* addCheck(QVBoxLayout* layout, const char* name, const QString& text);
QLabel* quietText(const QString& text);
/// Selects the entry with this data; none where it has none.
void choose(QComboBox* box, const QVariant& data);
