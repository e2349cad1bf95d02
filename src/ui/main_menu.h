#pragma once

class Commands;
class QMenu;
class QMenuBar;

/// Fills the menu bar; every command is in it.
void fillMenuBar(QMenuBar& bar, const Commands& commands);

/// Fills the tray's menu: what is wanted most, then everything that the menu bar has.
void fillTrayMenu(QMenu& menu, const Commands& commands);
