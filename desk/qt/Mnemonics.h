#pragma once
// Alt letters for menus: each caption of one menu (or of the menu bar) gets a letter of its
// own, the first letter of a word where one is free, so that every entry is reachable from
// the keyboard without anyone choosing letters by hand.

#include <QList>

class QAction;

namespace qx::desk {

// Marks a free letter (or digit) with '&' in each action's text; a text that marks one
// already keeps it, and a lone '&' in a caption ("Profit & Loss") stays a character.
void GiveMnemonics(const QList<QAction*>& actions);

} // namespace qx::desk
