#pragma once

#include <QMetaType>
#include <QString>

#include <functional>

/// What the message bar shows: what happened and what can be done. A plain value.
struct Message {
    enum class Kind { Information, Error };

    Kind kind = Kind::Error;
    QString text;
    QString actionText;           ///< of the button in front of "Close"; empty: no such button
    std::function<void()> action; ///< what that button does
};

Q_DECLARE_METATYPE(Message)
