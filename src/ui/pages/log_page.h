#pragma once

#include "ui/pages/list_page.h"

class LogModel;

/// What the program did, line by line; follows the newest line until the user scrolls away.
class LogPage final : public ListPage {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LogPage)

  public:
    LogPage(LogModel& log, QWidget* parent);

  private:
    void copySelected();
    void copyAll();

    LogModel& m_log;
};
