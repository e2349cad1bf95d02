#pragma once

#include "ui/pages/page_registry.h"

class FolderOpener;
class LogModel;
class PlayController;
class Player;
class UiSettings;

namespace BASS {
class PlayedStations;
}

/// What the pages work with. All of it outlives them.
struct PageServices {
    Player& player;
    BASS::PlayedStations& played;
    const UiSettings& settings;
    PlayController& play;
    FolderOpener& opener;
    LogModel& log;
};

/// The pages of the program. A further page is a further entry here.
PageRegistry standardPages(const PageServices& services);
