#include "ui/announcer.h"

#include <QAccessible>
#include <QWidget>

void announce(QObject* widget, const QString& text, Urgency urgency) {
    auto* target = qobject_cast<QWidget*>(widget);
    if (target == nullptr || text.isEmpty()) {
        return;
    }
    target->setAccessibleDescription(text); // sends DescriptionChanged
    QAccessibleEvent changed(target, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&changed);
    if (urgency == Urgency::Alert) {
        QAccessibleEvent alert(target, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}
