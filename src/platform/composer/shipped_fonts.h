#pragma once

namespace corvane {

/// Makes the fonts in the folder "fonts" beside the program known, so that pages break alike whatever the computer
/// has; does nothing when the program comes without. Needs a QGuiApplication.
void loadShippedFonts();

} // namespace corvane
