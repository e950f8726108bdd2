// Option groups by keyboard: Tab enters a group at the chosen option and leaves it with the next Tab; the
// arrows choose. Without a chosen option Tab enters at the first that can be chosen.
#pragma once

class QWidget;

namespace qdm {

// Every exclusive group of radio buttons that the window owns.
void FollowKeysInGroupsOf(QWidget* window);

}  // namespace qdm
