#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

class Page;

/// What the window needs to show a page.
struct PageEntry {
    QString id;    ///< never shown, never translated
    QString title; ///< in the navigation list and the View menu
    QString iconName;
    std::function<Page*(QWidget* parent)> create; ///< the result belongs to `parent`
};

/// The pages of the window, in the order of the navigation list. A further page is a further entry.
using PageRegistry = std::vector<PageEntry>;
