#pragma once

class QObject;
class QString;

/// Tells a screen reader what has just changed. The widget's accessible description is set to the
/// text, and the events that readers listen to are sent.
/// Thread: GUI.
enum class Urgency { Polite, Alert };
void announce(QObject* widget, const QString& text, Urgency urgency);
