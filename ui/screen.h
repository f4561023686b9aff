// The screen, and the loop that all windows live on.
#pragma once

namespace murmelix::ui {

// The same horizontally and vertically: 15 at 96 dots an inch, 7.5 at 192.
double twipsPerPixel();
int toPixels(int twips);
int toTwips(int pixels);

// Serves the windows of this thread until the process ends.
void runMessageLoop();

} // namespace murmelix::ui
