#pragma once

class Commands;
class QMenuBar;

/// Fills the menu bar; every command is in it.
void fillMenuBar(QMenuBar& bar, const Commands& commands);
