#include "ui/pages/standard_pages.h"

#include "ui/pages/history_page.h"
#include "ui/pages/log_page.h"
#include "ui/pages/recordings_page.h"
#include "ui/player.h"

PageRegistry standardPages(const PageServices& services) {
    PageRegistry pages;
    pages.push_back({QStringLiteral("history"),
                     HistoryPage::tr("Stations played"),
                     QStringLiteral("history"),
                     [services](QWidget* parent) -> Page* {
                         return new HistoryPage(services.played, services.play, parent);
                     }});
    pages.push_back(
        {QStringLiteral("recordings"),
         RecordingsPage::tr("Recordings"),
         QStringLiteral("recordings"),
         [services](QWidget* parent) -> Page* {
             auto* page = new RecordingsPage(services.settings, services.opener, parent);
             QObject::connect(
                 &services.player, &Player::sig_fileFinished, page, &RecordingsPage::refresh);
             return page;
         }});
    pages.push_back(
        {QStringLiteral("log"),
         LogPage::tr("Log"),
         QStringLiteral("log"),
         [services](QWidget* parent) -> Page* { return new LogPage(services.log, parent); }});
    return pages;
}
